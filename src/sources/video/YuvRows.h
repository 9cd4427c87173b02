#pragma once

#include <cstddef>
#include <cstdint>

namespace lumirra {

/// How 8-bit luma and chroma become red, green and blue.
struct YuvMatrix {
    float lumaOffset = 0;
    float luma = 1;
    float redOfV = 0;  ///< chroma counts in sixteenths of a level from the middle
    float greenOfU = 0;
    float greenOfV = 0;
    float blueOfU = 0;
};

/// One row to RGBA, opaque, rounded to nearest. `u` and `v` are in sixteenths, 0 for no colour.
void ConvertYuvRow(const YuvMatrix& matrix, const std::uint8_t* luma, const std::int16_t* u,
                   const std::int16_t* v, std::uint8_t* rgba, std::size_t width);

/// The same in a plain loop, bit for bit: what LUMIRRA_SIMD=scalar forces.
void ConvertYuvRowPlainly(const YuvMatrix& matrix, const std::uint8_t* luma, const std::int16_t* u,
                          const std::int16_t* v, std::uint8_t* rgba, std::size_t width);

}  // namespace lumirra
