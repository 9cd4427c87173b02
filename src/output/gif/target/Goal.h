#pragma once

#include <cstdint>
#include <vector>

#include "output/gif/Picture.h"
#include "output/gif/target/StillMask.h"

namespace lumirra::gif {

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

}  // namespace lumirra::gif
