#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "imaging/kernels/ColorSteps.h"

namespace lumirra {

/// Red, green, blue and a fourth channel (alpha as a weight, later luminance) of one row in floats.
using Planes = std::array<float*, 4>;

/// Three rows of luminance: above, at and below the row worked on.
using RowsAround = std::array<const float*, 3>;

/// How many rows `blurAcrossRows` makes at once.
inline constexpr int kBlurredRows = 8;

/// What a plane must have beyond its last pixel: kernels on planes work in whole vectors.
inline constexpr std::size_t kPlaneSlack = 64;

/// Rec. 709 luminance weights as the effects use them.
inline constexpr float kRedWeight = 0.2125F;
inline constexpr float kGreenWeight = 0.7154F;
inline constexpr float kBlueWeight = 0.0721F;

/// The pixel loops, rows in, rows out. `n` is a number of pixels. RGBA8 rows may start anywhere and
/// nothing outside them is read or written; input and output may be the same row. Planes hold
/// `kPlaneSlack` floats more than `n`, of which any may be read and written.
struct RowKernels {
    const char* name;

    /// RGBA8 to RGBA8: the steps, then the vignette (null for none); alpha is kept.
    void (*color)(const ColorSteps& steps, const VignetteRow* vignette, const std::uint8_t* in,
                  std::uint8_t* out, std::size_t n);

    /// rgb = mix(base, overlay, overlay alpha * mix), alpha of the base.
    void (*blend)(const std::uint8_t* base, const std::uint8_t* overlay, float mix,
                  std::uint8_t* out, std::size_t n);

    /// The steps, into planes. Alpha goes to the fourth plane; `premultiplied` multiplies it in.
    void (*load)(const ColorSteps& steps, bool premultiplied, const std::uint8_t* in,
                 const Planes& out, std::size_t n);

    /// Weighted sum of the 2 * radius + 1 pixels around each; `in` is valid `radius` pixels to both
    /// sides.
    void (*blurAlongRow)(const float* in, const float* weights, int radius, float* out,
                         std::size_t n);

    /// The same down the columns for `kBlurredRows` rows: in[0] is the row `radius` above the first
    /// of them, in[2 * radius + kBlurredRows - 1] the row as far below the last. `weights` is
    /// preceded and followed by kBlurredRows - 1 zeros.
    void (*blurAcrossRows)(const float* const* in, const float* weights, int radius,
                           float* const* out, std::size_t n);

    /// Divides by the fourth plane if `premultiplied`, then puts the luminance there. In place.
    void (*luminance)(bool premultiplied, const Planes& row, std::size_t n);

    /// Colours to `out`: black where the Sobel magnitude reaches the threshold, else quantised;
    /// their luminance to the fourth plane. `luminance` is valid one pixel to both sides.
    void (*toon)(const RowsAround& luminance, float threshold, float quantization, const Planes& in,
                 const Planes& out, std::size_t n);

    /// Black where edge * Sobel magnitude reaches the intensity, else white.
    void (*sketch)(const RowsAround& luminance, float intensity, float edge, const Planes& out,
                   std::size_t n);

    /// Planes to RGBA8 with the vignette (null for none) and the alpha of `alphaFrom`, an RGBA8 row
    /// (null for opaque).
    void (*store)(const Planes& in, const VignetteRow* vignette, const std::uint8_t* alphaFrom,
                  std::uint8_t* out, std::size_t n);
};

/// The plain loops: what the others are measured against.
const RowKernels& ScalarKernels();

/// The best loops this machine's vector unit allows.
const RowKernels& VectorKernels();

/// The vector loops, unless the environment variable LUMIRRA_SIMD is "scalar" at the first call.
const RowKernels& Kernels();

}  // namespace lumirra
