#pragma once

#include <cstdint>
#include <vector>

#include "output/animation/Canvas.h"
#include "output/gif/denoise/UnchangedMask.h"

namespace lumirra::gif {

/// Makes each frame's target, which is what the GIF is to show. A pixel that did not change keeps
/// its target; one that changed gets the mean of the frames ahead in which it will not change, so
/// that noise neither costs bytes nor is frozen in. One thread at a time, frames in order.
class TemporalDenoiser {
  public:
    explicit TemporalDenoiser(DenoiseTuning tuning) : tuning_(tuning) {}

    struct Result {
        Canvas target;
        std::vector<std::uint8_t> changed;    ///< 1 where the target differs from the last one
        std::vector<std::uint8_t> lifetimes;  ///< frames that a pixel's target is good for, 1..
    };

    /// `window` holds the frame and the frames ahead of it, all of one size; at least one.
    Result Next(const std::vector<const Canvas*>& window);
    /// The next frame is to be shown as it is.
    Result NextExact(const Canvas& frame);

  private:
    DenoiseTuning tuning_;
    Canvas last_;
};

}  // namespace lumirra::gif
