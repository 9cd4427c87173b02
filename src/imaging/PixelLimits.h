#pragma once

#include <cstdint>

namespace lumirra {

/// The largest source, a picture or one of a film: a telephone's picture of 200 million fits.
inline constexpr std::int64_t kMaxSourcePixels = 400'000'000;
/// The largest frame, and the largest output made of frames.
inline constexpr std::int64_t kMaxFramePixels = 100'000'000;
/// The longest side of a frame: of a GIF.
inline constexpr int kMaxFrameSide = 65535;

/// Whether frames of that size can be made.
constexpr bool IsFrameSize(double width, double height) {
    return width >= 1 && height >= 1 && width <= kMaxFrameSide && height <= kMaxFrameSide &&
           width * height <= static_cast<double>(kMaxFramePixels);
}

/// Lets the toolkit's readers have the memory of the largest source: the limit is tested by
/// headers, with a message. Any thread, any number of times.
void AllowLargestSources();

}  // namespace lumirra
