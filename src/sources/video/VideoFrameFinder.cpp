#include "sources/video/VideoFrameFinder.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace lumirra {

namespace {

// The frame shown, the one after it, and one more that is being let go.
constexpr std::size_t kLeastKept = 3;

long long BytesOf(const AVFrame& frame) {
    long long bytes = 0;
    for (const AVBufferRef* buffer : frame.buf) {
        bytes += buffer ? static_cast<long long>(buffer->size) : 0;
    }
    return bytes;
}

}  // namespace

VideoFrameFinder::Found VideoFrameFinder::At(std::int64_t time, const std::stop_token& stop) {
    aside_.reset();
    if (!Covers(time)) {
        Enter(time);
    }
    while (!stop.stop_requested() && !HasArrived(time)) {
        Pull();
    }
    const auto after = std::upper_bound(
        frames_.begin(), frames_.end(), time,
        [](std::int64_t wanted, const VideoFrame& frame) { return wanted < frame.time; });
    const auto& lostFrom = after == frames_.end() ? lostAtEnd_ : after->lostFrom;
    Found found;
    found.lost = lostFrom && *lostFrom <= time;
    found.frame = Shown(time);
    return found;
}

VideoFrameFinder::Approach VideoFrameFinder::Near(std::int64_t time, Clock::time_point until,
                                                  const std::stop_token& stop) {
    if (!Covers(time)) {
        KeepNearest(time);
        Enter(time);
    } else if (!HasArrived(time)) {
        Pull();
    }
    while (!HasArrived(time) && Clock::now() < until && !stop.stop_requested()) {
        Pull();
    }
    const VideoFrame* shown = Shown(time);
    if (HasArrived(time)) {
        aside_.reset();
        return {shown, true};
    }
    const bool asideIsNearer =
        aside_ && (!shown || std::abs(aside_->time - time) < std::abs(shown->time - time));
    return {asideIsNearer ? &*aside_ : shown, false};
}

void VideoFrameFinder::KeepNearest(std::int64_t time) {
    const auto nearer = [&](const VideoFrame& a, const VideoFrame& b) {
        return std::abs(a.time - time) < std::abs(b.time - time);
    };
    const auto nearest = std::min_element(frames_.begin(), frames_.end(), nearer);
    if (nearest != frames_.end() && (!aside_ || nearer(*nearest, *aside_))) {
        aside_ = std::move(*nearest);
    }
}

/// Of the frames held, the last one that is not after `time`, else the first.
const VideoFrame* VideoFrameFinder::Shown(std::int64_t time) const {
    if (frames_.empty()) {
        return nullptr;
    }
    const auto after = std::upper_bound(
        frames_.begin(), frames_.end(), time,
        [](std::int64_t wanted, const VideoFrame& frame) { return wanted < frame.time; });
    return after == frames_.begin() ? &*after : &*std::prev(after);
}

// Whether decoding on from here leads to the frame without waste.
bool VideoFrameFinder::Covers(std::int64_t time) const {
    if (frames_.empty()) {
        return ended_;  // nothing in the whole file
    }
    if (time < frames_.front().time) {
        return frames_.front().first;
    }
    return ended_ || time < frames_.back().time || !stream_.KeyFrameAhead(time);
}

// Makes the first frame held one that is not after `time`, if there is such a frame at all.
void VideoFrameFinder::Enter(std::int64_t time) {
    std::int64_t back = 0;
    do {
        Forget();
        stream_.Seek(time - back);
        Pull();
        back = back == 0 ? std::max<std::int64_t>(1, stream_.TicksOf(1)) : 2 * back;
    } while (!stream_.AtBeginning() && (frames_.empty() || frames_.front().time > time));
}

void VideoFrameFinder::Forget() {
    frames_.clear();
    keptBytes_ = 0;
    ended_ = false;
    lostAtEnd_.reset();
}

void VideoFrameFinder::Pull() {
    VideoFrame next = stream_.Next();
    if (!next.frame) {
        ended_ = true;
        lostAtEnd_ = next.lostFrom;
        return;
    }
    if (!frames_.empty() && next.time <= frames_.back().time) {
        return;  // time stamps that run backwards: nothing is shown at such a time
    }
    keptBytes_ += BytesOf(*next.frame);
    frames_.push_back(std::move(next));
    while (frames_.size() > kLeastKept && keptBytes_ > keepBytes_) {
        keptBytes_ -= BytesOf(*frames_.front().frame);
        frames_.pop_front();
    }
}

}  // namespace lumirra
