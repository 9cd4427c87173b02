#pragma once

#include <cstddef>
#include <cstdint>

#include "output/animation/Canvas.h"
#include "output/gif/Yuv.h"

namespace lumirra::gif {

struct SearchTuning;

/// The error of what must not be drawn.
constexpr float kNeverDrawn = 1e30F;
/// The colour of a transparent pixel.
constexpr float kFarYuv = 1e6F;

/// All that the search needs to know of one pixel.
struct alignas(32) SearchPixel {
    Yuv target;
    float weight = 0;
    Yuv shown;
    float keepError = kNeverDrawn;
};

/// One row of a frame; every pointer is to `width` values.
struct PixelRow {
    const Rgba* target = nullptr;
    const Rgba* shown = nullptr;              ///< on the reader's screen; null when that is blank
    const Rgba* drawn = nullptr;              ///< the targets that the screen was last drawn for
    const float* weights = nullptr;           ///< of masking
    const std::uint8_t* lifetimes = nullptr;  ///< frames that a target is good for; or null
    std::size_t width = 0;
    bool exact = false;  ///< a pixel may be kept only if it is right
};

/// Fills `out` (`row.width` pixels): the target's yuv, the screen's, and what keeping the screen's
/// pixel costs. Any thread.
void PreparePixels(const PixelRow& row, const SearchTuning& tuning, SearchPixel* out);

}  // namespace lumirra::gif
