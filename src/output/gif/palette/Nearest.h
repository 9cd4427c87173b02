#pragma once

#include <cstdint>
#include <vector>

#include "output/gif/Tone.h"

namespace lumirra::gif {

/// For each point the index of the nearest centre (the first of equals). 1..256 centres.
void NearestCenters(const std::vector<Tone>& points, const std::vector<Tone>& centers,
                    std::vector<std::uint8_t>& nearest);

}  // namespace lumirra::gif
