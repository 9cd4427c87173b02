#pragma once

#include <cstdint>
#include <vector>

#include "output/gif/Yuv.h"

namespace lumirra::gif {

/// For each point the index of the nearest centre (the first of equals). 1..256 centres.
void NearestCenters(const std::vector<Yuv>& points, const std::vector<Yuv>& centers,
                    std::vector<std::uint8_t>& nearest);

}  // namespace lumirra::gif
