#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumirra {

/// For each output position the span of source positions it is mixed from and their weights, which
/// sum to one.
struct ResampleWeights {
    struct Span {
        int first;
        int count;
        std::size_t weights;  ///< where the span's weights begin
    };
    std::vector<Span> spans;
    std::vector<float> weights;
};

/// Down: the Mitchell-Netravali cubic (B = C = 1/3) stretched to the output's pixel pitch, which
/// does not alias and hardly rings; from a third of the size down the tent, at half the work. The
/// picture is continued by its mirror image. Up: Catmull-Rom, which keeps the source's pixels
/// sharp; the border is repeated. Both sizes positive.
ResampleWeights MakeResampleWeights(int sourceSize, int targetSize);

/// out[i] = sum of weights[k] * rows[k][i] over `count` RGBA8 rows, colours multiplied by alpha
/// (0..1) on the way unless `opaque`. `pixels` is the rows' length; out holds 4 floats a pixel.
void MixRows(const std::uint8_t* const* rows, const float* weights, int count, bool opaque,
             float* out, int pixels);

/// Mixes along a row of 4 floats a pixel and stores straight RGBA8, rounded.
void MixAlongRow(const float* row, const ResampleWeights& weights, std::uint8_t* out);

/// The same in plain loops, bit for bit: what machines without a vector unit run, and
/// LUMIRRA_SIMD=scalar forces.
void MixRowsPlainly(const std::uint8_t* const* rows, const float* weights, int count, bool opaque,
                    float* out, int pixels);
void MixAlongRowPlainly(const float* row, const ResampleWeights& weights, std::uint8_t* out);

}  // namespace lumirra
