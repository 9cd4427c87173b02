#pragma once

#include <cstddef>
#include <cstdint>

#include "output/gif/Picture.h"
#include "output/gif/Tone.h"

namespace lumirra::gif {

struct SearchTuning;

/// The error of what must not be drawn.
constexpr float kNeverDrawn = 1e30F;
/// The tone of a pixel without colour.
constexpr float kFarTone = 1e6F;

/// All that the search needs to know of one pixel.
struct alignas(32) SearchPixel {
    Tone target;
    float weight = 0;
    Tone shown;
    float keepError = kNeverDrawn;
};

/// One row of a frame; every pointer is to `width` values.
struct PixelRow {
    const Rgba* goal = nullptr;
    const Rgba* shown = nullptr;          ///< on the reader's screen; null when that is blank
    const Rgba* drawn = nullptr;          ///< the goals that the screen was last drawn for
    const float* weights = nullptr;       ///< of masking
    const std::uint8_t* lasts = nullptr;  ///< frames that a goal is good for; or null
    std::size_t width = 0;
    bool exact = false;  ///< a pixel may be kept only if it is right
};

/// Fills `out` (`row.width` pixels): the goal's tone, the screen's, and what keeping the screen's
/// pixel costs. Any thread.
void PreparePixels(const PixelRow& row, const SearchTuning& tuning, SearchPixel* out);

}  // namespace lumirra::gif
