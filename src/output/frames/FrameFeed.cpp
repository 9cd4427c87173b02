#include "output/frames/FrameFeed.h"

#include <algorithm>

#include "output/frames/FrameFile.h"

namespace lumirra {

std::optional<gif::Picture> FrameFeed::Load(int entry) {
    const Outcome<QImage> frame = ReadFrame(request_.framePaths.at(entry));
    if (!frame) {
        const std::scoped_lock lock(mutex_);
        leftOut_.emplace_back(entry, frame.failure());
        return std::nullopt;
    }
    return PlaceOnCanvas(*frame, fit_, request_.colorLevels);
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
