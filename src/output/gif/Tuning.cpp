#include "output/gif/Tuning.h"

#include <algorithm>
#include <cmath>

namespace lumirra::gif {

EncoderTuning TuningFor(int quality) {
    constexpr float kLambdaAtNinety = 3.1F;
    constexpr float kDeadZoneAtNinety = 3.5F;
    constexpr float kStepsToDouble = 14;
    constexpr float kStepsToHalve = 4;  // the last errors cost most
    const auto below = static_cast<float>(90 - std::clamp(quality, 1, 100));
    const float coarser = std::exp2(below / (below > 0 ? kStepsToDouble : kStepsToHalve));
    EncoderTuning tuning;
    tuning.search.lambda = kLambdaAtNinety * coarser;
    tuning.search.goodEnough *= coarser;
    tuning.search.deadZone = kDeadZoneAtNinety * coarser;
    return tuning;
}

}  // namespace lumirra::gif
