#include "imaging/kernels/ColorSteps.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "imaging/kernels/PhotoLooks.h"

namespace lumirra {

namespace {

/// Absent when the value is neutral or no number; else limited, which keeps the arithmetic finite.
/// The limits lie where a further change makes no difference to 8-bit pixels.
std::optional<float> Step(float value, float neutral, float lowest, float highest) {
    if (std::isnan(value) || value == neutral) {
        return std::nullopt;
    }
    return std::clamp(value, lowest, highest);
}

Power PowerOf(float gamma, float stops) {
    Power power{gamma, gamma * stops, gamma > 0 ? 0.0F : 1.0F, std::nullopt};
    constexpr float kLowest = -126;  // exponent of the smallest normal number
    if (kLowest * power.power + power.offset < -30) {
        power.least = std::exp2(std::max(kLowest, (kLowest - power.offset) / power.power));
    }
    return power;
}

/// To YIQ, turned in the IQ plane, and back. The chroma axes of YIQ lie 33 degrees off the colour
/// difference axes and run the other way round, so red moves towards yellow for a negative turn.
std::array<float, 9> HueMatrix(double degrees) {
    using Matrix = std::array<std::array<double, 3>, 3>;
    constexpr Matrix kToYiq = {
        {{0.299, 0.587, 0.114}, {0.595716, -0.274453, -0.321263}, {0.211456, -0.522591, 0.311135}}};
    const auto& m = kToYiq;
    const auto cofactor = [&m](std::size_t row, std::size_t column) {
        const auto at = [&](std::size_t i, std::size_t j) {
            return m[(row + i) % 3][(column + j) % 3];
        };
        return at(1, 1) * at(2, 2) - at(1, 2) * at(2, 1);
    };
    const double determinant =
        m[0][0] * cofactor(0, 0) + m[0][1] * cofactor(0, 1) + m[0][2] * cofactor(0, 2);
    const double angle = -degrees * std::numbers::pi / 180;
    const Matrix turn = {
        {{1, 0, 0}, {0, std::cos(angle), -std::sin(angle)}, {0, std::sin(angle), std::cos(angle)}}};
    std::array<float, 9> result{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            double sum = 0;
            for (std::size_t i = 0; i < 3; ++i) {
                for (std::size_t j = 0; j < 3; ++j) {
                    sum += cofactor(i, row) / determinant * turn[i][j] * m[j][column];
                }
            }
            result[3 * row + column] = static_cast<float>(sum);
        }
    }
    return result;
}

}  // namespace

bool ColorSteps::IsNeutral() const {
    return !brightness && !contrast && !saturation && !exposureFactor && !gamma && !hueMatrix &&
           !look && !quantization;
}

ColorSteps ColorStepsOf(const EffectSettings& settings) {
    ColorSteps steps;
    steps.brightness = Step(settings.brightness, 0, -2, 2);
    if (const auto contrast = Step(settings.contrast, 1, -1e6F, 1e6F)) {
        steps.contrast = Linear{*contrast, 0.5F - 0.5F * *contrast};
    }
    if (const auto saturation = Step(settings.saturation, 1, -1e6F, 1e6F)) {
        steps.saturation = Linear{*saturation, 1 - *saturation};
    }
    const float stops = Step(settings.exposure, 0, -64, 64).value_or(0);
    if (const auto gamma = Step(settings.gamma, 1, 0, 1e3F)) {
        steps.gamma = PowerOf(*gamma, stops);
    } else if (stops != 0) {
        steps.exposureFactor = std::exp2(stops);
    }
    if (std::isfinite(settings.hue) && std::fmod(settings.hue, 360.0F) != 0) {
        steps.hueMatrix = HueMatrix(std::fmod(double{settings.hue}, 360.0));
    }
    if (settings.colorEffectOn && settings.colorEffectName) {
        steps.look = FindPhotoLook(*settings.colorEffectName);
    }
    return steps;
}

std::optional<LimitedLinear> ToneOfBytes(const ColorSteps& steps) {
    if (!steps.brightness && !steps.contrast) {
        return std::nullopt;
    }
    const auto [factor, offset] = steps.contrast.value_or(Linear{1, 0});
    const auto [low, high] = std::minmax({offset, factor + offset});
    return LimitedLinear{factor / 255, steps.brightness.value_or(0) * factor + offset,
                         std::clamp(low, 0.0F, 1.0F), std::clamp(high, 0.0F, 1.0F)};
}

float UsableQuantization(float quantization) {
    if (std::isnan(quantization) || std::abs(quantization) < 1e-6F) {
        return 0;
    }
    return std::clamp(quantization, -1e6F, 1e6F);
}

Vignette VignetteOf(float radius, int width, int height) {
    const float usable = std::isnan(radius) ? 0 : std::clamp(radius, -1e3F, 1e3F);
    return {0.5F + usable, 1.0F / static_cast<float>(width), 1.0F / static_cast<float>(height)};
}

VignetteRow RowOf(const Vignette& vignette, int row) {
    const float distance = (static_cast<float>(row) + 0.5F) * vignette.rowStep - 0.5F;
    return {vignette.start, vignette.columnStep, distance * distance};
}

}  // namespace lumirra
