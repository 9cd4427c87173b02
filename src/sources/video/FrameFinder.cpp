#include "sources/video/FrameFinder.h"

#include <algorithm>

namespace lumirra {

namespace {

// Frames kept for stepping back, once somebody has.
constexpr std::size_t kMaxKept = 32;
constexpr long long kMaxKeptBytes = 64LL << 20;
constexpr double kStepBackSeconds = 2;

std::size_t FramesWorthKeeping(const AVFrame& frame) {
    const long long bytes = 3LL * frame.width * frame.height;  // deep formats: twice as much, rare
    return static_cast<std::size_t>(
        std::clamp(kMaxKeptBytes / std::max(bytes, 1LL), 1LL, static_cast<long long>(kMaxKept)));
}

}  // namespace

FrameFinder::Found FrameFinder::At(std::int64_t time) {
    if (!Covers(time)) {
        Enter(time);
    }
    while (!ended_ && (frames_.empty() || frames_.back().time <= time)) {
        Pull();
    }
    const auto after = std::upper_bound(
        frames_.begin(), frames_.end(), time,
        [](std::int64_t wanted, const VideoFrame& frame) { return wanted < frame.time; });
    const auto& lostFrom = after == frames_.end() ? lostAtEnd_ : after->lostFrom;
    Found found;
    found.lost = lostFrom && *lostFrom <= time;
    if (!frames_.empty()) {
        found.frame = after == frames_.begin() ? &*after : &*std::prev(after);
    }
    return found;
}

// Whether decoding on from here leads to the frame without waste.
bool FrameFinder::Covers(std::int64_t time) const {
    if (frames_.empty()) {
        return ended_;  // nothing in the whole file
    }
    if (time < frames_.front().time) {
        return stream_.AtBeginning() && !frames_.front().lostFrom && frames_.front().time <= 0;
    }
    return ended_ || time < frames_.back().time || !stream_.KeyFrameAhead(time);
}

// Makes the first frame held one that is not after `time`, if there is such a frame at all.
void FrameFinder::Enter(std::int64_t time) {
    if (!frames_.empty() && time < frames_.front().time &&
        frames_.front().time - time < stream_.TicksOf(kStepBackSeconds)) {
        keepBehind_ = FramesWorthKeeping(*frames_.front().frame);
    }
    std::int64_t back = 0;
    do {
        Forget();
        stream_.Seek(time - back);
        Pull();
        back = back == 0 ? std::max<std::int64_t>(1, stream_.TicksOf(1)) : 2 * back;
    } while (!stream_.AtBeginning() && (frames_.empty() || frames_.front().time > time));
}

void FrameFinder::Forget() {
    frames_.clear();
    ended_ = false;
    lostAtEnd_.reset();
}

void FrameFinder::Pull() {
    VideoFrame next = stream_.Next();
    if (!next.frame) {
        ended_ = true;
        lostAtEnd_ = next.lostFrom;
        return;
    }
    if (!frames_.empty() && next.time <= frames_.back().time) {
        return;  // time stamps that run backwards: nothing is shown at such a time
    }
    frames_.push_back(std::move(next));
    if (frames_.size() > keepBehind_ + 2) {
        frames_.pop_front();
    }
}

}  // namespace lumirra
