#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumirra {

/// Straight alpha, sRGB.
struct Rgba {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    std::uint8_t a = 0;
    friend bool operator==(const Rgba&, const Rgba&) = default;
};

/// The pixels of one picture of an animation, as large as the animation, rows from the top.
struct Canvas {
    int width = 0;
    int height = 0;
    std::vector<Rgba> pixels;

    std::size_t Size() const { return pixels.size(); }
    const Rgba* Row(int y) const { return pixels.data() + Offset(y); }
    Rgba* Row(int y) { return pixels.data() + Offset(y); }

  private:
    std::size_t Offset(int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
};

}  // namespace lumirra
