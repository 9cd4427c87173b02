#pragma once

#include <cstdint>
#include <vector>

#include "output/animation/Canvas.h"

namespace lumirra::gif {

/// Differences in levels (0..255) that count as standing still.
struct DenoiseTuning {
    int pixelLimit = 5;  ///< of one pixel in any channel
    int areaLimit = 9;   ///< of the sum of 3 x 3 pixels
    int lookAhead = 4;   ///< frames averaged at most, beside the frame itself
};

/// 1 where `a` and `b`, of the same size, agree by the limits of `tuning`, else 0; one byte a
/// pixel. Pixels that one of them lacks never agree. Any thread.
void UnchangedMask(const Canvas& a, const Canvas& b, const DenoiseTuning& tuning,
                   std::vector<std::uint8_t>& mask);

}  // namespace lumirra::gif
