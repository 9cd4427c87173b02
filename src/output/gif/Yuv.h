#pragma once

#include "output/animation/Canvas.h"

namespace lumirra::gif {

/// A colour where squared distance follows what the eye minds: luma full, chroma less. Linear in
/// the sRGB values, so errors may be spread and averaged here.
struct Yuv {
    float y = 0;
    float u = 0;
    float v = 0;
};

constexpr float kLumaScale = 1.7F;
constexpr float kBlueScale = 0.55F;
constexpr float kRedScale = 0.75F;

inline Yuv YuvOf(float r, float g, float b) {
    const float luma = 0.299F * r + 0.587F * g + 0.114F * b;
    return {kLumaScale * luma, kBlueScale * (b - luma), kRedScale * (r - luma)};
}

inline Yuv YuvOf(Rgba color) {
    return YuvOf(static_cast<float>(color.r), static_cast<float>(color.g),
                 static_cast<float>(color.b));
}

/// The inverse, not rounded and not clamped.
struct RgbValue {
    float r = 0;
    float g = 0;
    float b = 0;
};

inline RgbValue RgbOf(Yuv yuv) {
    const float luma = yuv.y / kLumaScale;
    const float b = luma + yuv.u / kBlueScale;
    const float r = luma + yuv.v / kRedScale;
    return {r, (luma - 0.299F * r - 0.114F * b) / 0.587F, b};
}

inline float SquaredDistance(Yuv a, Yuv b) {
    const float y = a.y - b.y;
    const float u = a.u - b.u;
    const float v = a.v - b.v;
    return y * y + u * u + v * v;
}

}  // namespace lumirra::gif
