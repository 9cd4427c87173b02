#pragma once

#include <cstdint>
#include <vector>

#include "output/gif/Picture.h"

namespace lumirra::gif {

/// Differences in levels (0..255) that count as standing still.
struct GoalTuning {
    int pixelLimit = 5;  ///< of one pixel in any channel
    int areaLimit = 1;   ///< of the mean of 3 x 3 pixels
    int lookAhead = 4;   ///< frames averaged at most, beside the frame itself
};

/// Decides what each frame is to show: a pixel that stands still keeps its goal, one that moved
/// gets the mean of the frames ahead during which it will stand still, so that grain neither costs
/// bytes nor is frozen in.
class GoalMaker {
  public:
    explicit GoalMaker(GoalTuning tuning) : tuning_(tuning) {}

    struct Result {
        Picture goal;
        std::vector<std::uint8_t> moved;  ///< 1 where the goal differs from the last one's
        std::vector<std::uint8_t> lasts;  ///< frames that it is good for, this one and those ahead
    };

    /// `window` holds the frame and the frames ahead of it, all of one size; at least one.
    Result Next(const std::vector<const Picture*>& window);
    /// The next frame is to be shown as it is.
    Result NextExact(const Picture& frame);

  private:
    GoalTuning tuning_;
    Picture last_;
};

/// 1 where `a` and `b` agree by the limits of `tuning`, else 0; one byte a pixel.
void StillMask(const Picture& a, const Picture& b, const GoalTuning& tuning,
               std::vector<std::uint8_t>& mask);

}  // namespace lumirra::gif
