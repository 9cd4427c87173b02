#include "output/frames/FrameFeed.h"

#include <algorithm>

#include "output/frames/EncoderSetup.h"
#include "output/frames/FrameReader.h"

namespace lumirra {

std::optional<TimedCanvas> FrameFeed::Load(int entry) {
    const FrameInput& input = request_.frames.at(static_cast<std::size_t>(entry));
    const Outcome<QImage> frame = ReadFrame(input.path);
    if (!frame) {
        const std::scoped_lock lock(mutex_);
        leftOut_.emplace_back(entry, frame.failure());
        return std::nullopt;
    }
    TimedCanvas loaded{PlaceOnCanvas(*frame, fit_, request_.colorLevels), DelayOf(input, request_)};
    const std::scoped_lock lock(mutex_);
    hundredths_ += loaded.delay;
    return loaded;
}

std::vector<Failure> FrameFeed::TakeLeftOut() {
    std::sort(leftOut_.begin(), leftOut_.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<Failure> failures;
    failures.reserve(leftOut_.size());
    for (auto& [entry, failure] : leftOut_) {
        failures.push_back(std::move(failure));
    }
    return failures;
}

}  // namespace lumirra
