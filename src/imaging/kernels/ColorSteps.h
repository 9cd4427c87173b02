#pragma once

#include <array>
#include <optional>

#include "imaging/EffectSettings.h"

namespace lumirra {

/// One of the photographic looks: a colour matrix, a boost of saturation that fades out towards the
/// ends of each channel (so that it does not clip), and a smooth tone curve for each channel. Every
/// part clamps to 0..1.
struct PhotoLook {
    std::array<float, 9> matrix;                ///< row by row
    float vividness;                            ///< c += vividness * 4 c (1 - c) (c - L)
    std::array<std::array<float, 4>, 3> curve;  ///< polynomial in c, constant first
};

/// c * factor + offset.
struct Linear {
    float factor;
    float offset;
};

/// (c * 2^stops)^power, as 2^(log2(c) * power + offset) with offset = stops * power.
struct Power {
    float power;
    float offset;
    float ofZero;  ///< what zero gives
    /// What gives less than this number does, 2^-126, is as good as zero; absent where the smallest
    /// numbers there are give more than 2^-30.
    std::optional<float> least;
};

/// Per-pixel adjustments, applied in this order, colours clamped to 0..1 after every step. A
/// neutral step is absent. All values are finite.
struct ColorSteps {
    std::optional<float> brightness;
    std::optional<Linear> contrast;
    std::optional<Linear> saturation;     ///< the offset is a share of the luminance
    std::optional<float> exposureFactor;  ///< absent when the gamma step does it
    std::optional<Power> gamma;
    std::optional<std::array<float, 9>> hueMatrix;  ///< row by row
    std::optional<PhotoLook> look;
    std::optional<float> quantization;  ///< floor(c * q + 0.5) / q; 0 gives black

    bool IsNeutral() const;
};

/// c * factor + offset, kept between the limits.
struct LimitedLinear {
    float factor;
    float offset;
    float low;
    float high;
};

/// Brightness and contrast of a byte (0..255) as one step, absent when both are neutral: clamping
/// before a linear step is the same as clamping after it to what the ends become.
std::optional<LimitedLinear> ToneOfBytes(const ColorSteps& steps);

/// The colour adjustments and the photo effect of the settings. Values that are no numbers are
/// neutral, infinite ones are taken as very large.
ColorSteps ColorStepsOf(const EffectSettings& settings);

/// `quantization` for the kernels: finite and either 0 or far enough from it to divide by.
float UsableQuantization(float quantization);

/// Darkening towards the corners: rgb * (1 - smoothstep(start, start + 0.25, d)), d the distance of
/// the pixel centre from the middle, the picture's width and height being 1 each.
struct Vignette {
    float start = 0;
    float columnStep = 0;  ///< 1 / width
    float rowStep = 0;     ///< 1 / height
};

/// The vignette along one row.
struct VignetteRow {
    float start;
    float columnStep;
    float squaredRowDistance;
};

Vignette VignetteOf(float radius, int width, int height);
VignetteRow RowOf(const Vignette& vignette, int row);

}  // namespace lumirra
