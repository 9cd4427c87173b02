#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "imaging/kernels/RowKernels.h"

namespace lumirra {

namespace {

using Color = std::array<float, 3>;

float Clamped(float value) {
    return std::clamp(value, 0.0F, 1.0F);
}

template <typename Change>
void ForEach(Color& color, const Change& change) {
    for (float& channel : color) {
        channel = Clamped(change(channel));
    }
}

float Luminance(const Color& c) {
    return kRedWeight * c[0] + kGreenWeight * c[1] + kBlueWeight * c[2];
}

Color Transform(const std::array<float, 9>& m, const Color& c) {
    Color result{};
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = Clamped(m[3 * i] * c[0] + m[3 * i + 1] * c[1] + m[3 * i + 2] * c[2]);
    }
    return result;
}

void Quantize(Color& color, float q) {
    const float inverse = q == 0 ? 0 : 1 / q;
    ForEach(color, [=](float c) { return std::floor(c * q + 0.5F) * inverse; });
}

void ApplyLook(const PhotoLook& look, Color& color) {
    color = Transform(look.matrix, color);
    const float grey = Luminance(color);
    ForEach(color, [&](float c) { return c + look.vividness * 4 * c * (1 - c) * (c - grey); });
    for (std::size_t i = 0; i < 3; ++i) {
        const auto& k = look.curve[i];
        color[i] = Clamped(((k[3] * color[i] + k[2]) * color[i] + k[1]) * color[i] + k[0]);
    }
}

void ApplySteps(const ColorSteps& steps, Color& color) {
    if (steps.brightness) {
        ForEach(color, [&](float c) { return c + *steps.brightness; });
    }
    if (steps.contrast) {
        ForEach(color,
                [&](float c) { return c * steps.contrast->factor + steps.contrast->offset; });
    }
    if (steps.saturation) {
        const float grey = Luminance(color) * steps.saturation->offset;
        ForEach(color, [&](float c) { return c * steps.saturation->factor + grey; });
    }
    if (steps.exposureFactor) {
        ForEach(color, [&](float c) { return c * *steps.exposureFactor; });
    }
    if (const auto& gamma = steps.gamma) {
        ForEach(color, [&](float c) {
            return c > 0 ? std::exp2(std::log2(c) * gamma->power + gamma->offset) : gamma->ofZero;
        });
    }
    if (steps.hueMatrix) {
        color = Transform(*steps.hueMatrix, color);
    }
    if (steps.look) {
        ApplyLook(*steps.look, color);
    }
    if (steps.quantization) {
        Quantize(color, *steps.quantization);
    }
}

float VignetteFactor(const VignetteRow& vignette, std::size_t x) {
    const float across = (static_cast<float>(x) + 0.5F) * vignette.columnStep - 0.5F;
    const float distance = std::sqrt(across * across + vignette.squaredRowDistance);
    const float t = Clamped((distance - vignette.start) * 4);
    return 1 - t * t * (3 - 2 * t);
}

Color LoadColor(const std::uint8_t* pixel) {
    constexpr float kScale = 1.0F / 255;
    return {static_cast<float>(pixel[0]) * kScale, static_cast<float>(pixel[1]) * kScale,
            static_cast<float>(pixel[2]) * kScale};
}

void StoreColor(const Color& color, std::uint8_t alpha, std::uint8_t* pixel) {
    for (std::size_t i = 0; i < 3; ++i) {
        pixel[i] = static_cast<std::uint8_t>(std::nearbyint(color[i] * 255));
    }
    pixel[3] = alpha;
}

void ColorRow(const ColorSteps& steps, const VignetteRow* vignette, const std::uint8_t* in,
              std::uint8_t* out, std::size_t n) {
    for (std::size_t x = 0; x < n; ++x) {
        Color color = LoadColor(in + 4 * x);
        ApplySteps(steps, color);
        if (vignette != nullptr) {
            const float factor = VignetteFactor(*vignette, x);
            ForEach(color, [=](float c) { return c * factor; });
        }
        StoreColor(color, in[4 * x + 3], out + 4 * x);
    }
}

void BlendRow(const std::uint8_t* base, const std::uint8_t* overlay, float mix, std::uint8_t* out,
              std::size_t n) {
    for (std::size_t x = 0; x < n; ++x) {
        const Color below = LoadColor(base + 4 * x);
        const Color above = LoadColor(overlay + 4 * x);
        const float part = static_cast<float>(overlay[4 * x + 3]) * (mix / 255);
        Color color{};
        for (std::size_t i = 0; i < 3; ++i) {
            color[i] = Clamped(below[i] + (above[i] - below[i]) * part);
        }
        StoreColor(color, base[4 * x + 3], out + 4 * x);
    }
}

void LoadRow(const ColorSteps& steps, bool premultiplied, const std::uint8_t* in, const Planes& out,
             std::size_t n) {
    for (std::size_t x = 0; x < n; ++x) {
        Color color = LoadColor(in + 4 * x);
        ApplySteps(steps, color);
        const float alpha = static_cast<float>(in[4 * x + 3]) * (1.0F / 255);
        for (std::size_t i = 0; i < 3; ++i) {
            out[i][x] = premultiplied ? color[i] * alpha : color[i];
        }
        out[3][x] = alpha;
    }
}

void BlurAlongRow(const float* in, const float* weights, int radius, float* out, std::size_t n) {
    for (std::size_t x = 0; x < n; ++x) {
        float sum = 0;
        for (int k = 0; k <= 2 * radius; ++k) {
            sum += weights[k] * (in + x)[k - radius];
        }
        out[x] = sum;
    }
}

void BlurAcrossRows(const float* const* in, const float* weights, int radius, float* const* out,
                    std::size_t n) {
    for (int row = 0; row < kBlurredRows; ++row) {
        for (std::size_t x = 0; x < n; ++x) {
            float sum = 0;
            for (int k = 0; k <= 2 * radius; ++k) {
                sum += weights[k] * in[row + k][x];
            }
            out[row][x] = sum;
        }
    }
}

void LuminanceRow(bool premultiplied, const Planes& row, std::size_t n) {
    for (std::size_t x = 0; x < n; ++x) {
        Color color = {row[0][x], row[1][x], row[2][x]};
        if (premultiplied) {
            const float inverse = 1 / std::max(row[3][x], 1e-30F);
            ForEach(color, [=](float c) { return c * inverse; });
            for (std::size_t i = 0; i < 3; ++i) {
                row[i][x] = color[i];
            }
        }
        row[3][x] = Luminance(color);
    }
}

float SobelMagnitude(const RowsAround& rows, std::size_t x) {
    const float* above = rows[0] + x;
    const float* at = rows[1] + x;
    const float* below = rows[2] + x;
    const float across = (above[1] - above[-1]) + 2 * (at[1] - at[-1]) + (below[1] - below[-1]);
    const float down = (below[-1] - above[-1]) + 2 * (below[0] - above[0]) + (below[1] - above[1]);
    return std::sqrt(across * across + down * down);
}

void ToonRow(const RowsAround& luminance, float threshold, float quantization, const Planes& in,
             const Planes& out, std::size_t n) {
    for (std::size_t x = 0; x < n; ++x) {
        Color color{};
        if (!(SobelMagnitude(luminance, x) >= threshold)) {
            color = {in[0][x], in[1][x], in[2][x]};
            Quantize(color, quantization);
        }
        for (std::size_t i = 0; i < 3; ++i) {
            out[i][x] = color[i];
        }
        out[3][x] = Luminance(color);
    }
}

void SketchRow(const RowsAround& luminance, float intensity, float edge, const Planes& out,
               std::size_t n) {
    for (std::size_t x = 0; x < n; ++x) {
        const bool black = edge * SobelMagnitude(luminance, x) >= intensity;
        for (std::size_t i = 0; i < 3; ++i) {
            out[i][x] = black ? 0 : 1;
        }
    }
}

void StoreRow(const Planes& in, const VignetteRow* vignette, const std::uint8_t* alphaFrom,
              std::uint8_t* out, std::size_t n) {
    for (std::size_t x = 0; x < n; ++x) {
        const float factor = vignette == nullptr ? 1 : VignetteFactor(*vignette, x);
        const Color color = {in[0][x] * factor, in[1][x] * factor, in[2][x] * factor};
        StoreColor(color, alphaFrom == nullptr ? 255 : alphaFrom[4 * x + 3], out + 4 * x);
    }
}

}  // namespace

const RowKernels& ScalarKernels() {
    static constexpr RowKernels kernels = {"scalar",     ColorRow,       BlendRow,     LoadRow,
                                           BlurAlongRow, BlurAcrossRows, LuminanceRow, ToonRow,
                                           SketchRow,    StoreRow};
    return kernels;
}

const RowKernels& Kernels() {
    static const RowKernels& chosen = []() -> const RowKernels& {
        const char* wish = std::getenv("LUMIRRA_SIMD");
        const bool scalar = wish != nullptr && std::string_view(wish) == "scalar";
        return scalar ? ScalarKernels() : VectorKernels();
    }();
    return chosen;
}

}  // namespace lumirra
