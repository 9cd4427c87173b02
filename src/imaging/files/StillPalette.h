#pragma once

#include <QImage>
#include <array>
#include <cstdint>
#include <vector>

namespace lumirra {

struct IndexedPicture {
    using Rgb = std::array<std::uint8_t, 3>;
    static constexpr std::uint8_t kTransparent = 255;  ///< never the index of a colour

    std::vector<Rgb> palette;  ///< at most 255
    std::vector<std::uint8_t> pixels;
    bool hasTransparency = false;
};

/// A palette and the indices of an RGBA8888 picture. Up to 255 different colours are kept exactly;
/// more are reduced by median cut and error diffusion. Pixels less than half opaque become
/// transparent, the others opaque.
IndexedPicture ReduceColors(const QImage& rgba);

}  // namespace lumirra
