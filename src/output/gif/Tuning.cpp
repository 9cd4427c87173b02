#include "output/gif/Tuning.h"

#include <algorithm>
#include <cmath>

namespace lumirra::gif {

EncoderTuning TuningFor(double quality) {
    constexpr float kLambdaAtNinety = 3.1F;
    constexpr float kDeadZoneAtNinety = 3.5F;
    constexpr float kStepsToDouble = 14;
    constexpr float kStepsToHalve = 4.4F;  // the last errors cost most
    const auto below = static_cast<float>(90 - std::clamp(quality, 1.0, 100.0));
    const float coarser = std::exp2(below / (below > 0 ? kStepsToDouble : kStepsToHalve));
    EncoderTuning tuning;
    tuning.search.lambda = kLambdaAtNinety * coarser;
    tuning.search.goodEnough *= coarser;
    tuning.search.deadZone = kDeadZoneAtNinety * coarser;
    if (below < 0) {
        // From the default to the best: less dither, and still pixels are redrawn until they fit.
        const float better = below / -10;
        const auto reach = [better](float& value, float best) { value += better * (best - value); };
        reach(tuning.search.diffusion, 0.17F);
        reach(tuning.search.bandDiffusion, 0.48F);
        reach(tuning.search.refine, 0.75F);
        reach(tuning.search.goodEnough, 1);
        tuning.denoise.areaLimit = static_cast<int>(
            std::lround((1 - better) * static_cast<float>(tuning.denoise.areaLimit)));
    }
    return tuning;
}

}  // namespace lumirra::gif
