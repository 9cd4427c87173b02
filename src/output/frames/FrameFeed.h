#pragma once

#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "output/AnimationRequest.h"
#include "output/frames/CanvasFit.h"

namespace lumirra {

/// Loads frames for the encoder's threads and remembers which could not be read. Any thread.
class FrameFeed {
  public:
    /// Both must outlive the feed.
    FrameFeed(const AnimationRequest& request, const CanvasFit& fit)
        : request_(request), fit_(fit) {}

    std::optional<TimedCanvas> Load(int entry);
    /// How long the frames loaded are shown.
    double Seconds() const { return static_cast<double>(hundredths_) / 100; }
    /// Why frames are missing, in the order of the frames.
    std::vector<Failure> TakeLeftOut();

  private:
    const AnimationRequest& request_;
    const CanvasFit& fit_;
    std::mutex mutex_;
    long long hundredths_ = 0;
    std::vector<std::pair<int, Failure>> leftOut_;
};

}  // namespace lumirra
