#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "output/animation/Canvas.h"

namespace lumirra::gif {

/// What the reader does with the canvas before the next image.
enum class Disposal : std::uint8_t { Keep = 1, Clear = 2 };

struct ImageBlock {
    int width = 0;
    int height = 0;
    int delayHundredths = 10;
    Disposal disposal = Disposal::Keep;
    std::optional<std::uint8_t> transparent;
    std::vector<Rgba> localPalette;  ///< empty: the image uses the file's own
};

/// Signature, screen, the file's palette (at most 256 colours) and, when `loops` is there, the loop
/// field.
std::vector<std::uint8_t> FileHeader(int width, int height, const std::vector<Rgba>& palette,
                                     std::optional<std::uint16_t> loops);
/// All that stands before the image data.
std::vector<std::uint8_t> ImageHeader(const ImageBlock& image);

constexpr std::uint8_t kTrailer = 0x3B;

}  // namespace lumirra::gif
