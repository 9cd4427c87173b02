#pragma once

#include <cstdint>
#include <vector>

#include "output/gif/denoise/UnchangedMask.h"
#include "output/gif/lzw/LossyLzwSearch.h"
#include "output/gif/lzw/PixelRow.h"
#include "output/gif/palette/NearestColor.h"

/// The vector operations in plain loops, to the bit: what LUMIRRA_SIMD=scalar forces and tests
/// compare with.
namespace lumirra::gif::scalar {

/// Whether the environment asks for plain loops.
bool IsForced();

void NearestCenters(const std::vector<Yuv>& points, const std::vector<Yuv>& centers,
                    std::vector<std::uint8_t>& nearest);
void UnchangedMask(const Canvas& a, const Canvas& b, const DenoiseTuning& tuning,
                   std::vector<std::uint8_t>& mask);
void PreparePixels(const PixelRow& row, const SearchTuning& tuning, SearchPixel* out);
bool SearchLossyLzw(const SearchJob& job, Screen& screen, std::vector<std::uint8_t>& data);

}  // namespace lumirra::gif::scalar
