#pragma once

#include <QImage>
#include <array>
#include <vector>

#include "imaging/EffectSettings.h"

namespace lumirra::oracle {

/// A number known to lie between two doubles. Every operation widens the bounds by what single
/// precision may lose, so the bounds hold whatever a float kernel computes; where the formula jumps
/// (a threshold, a rounding) they enclose both outcomes exactly when the float error reaches the
/// jump.
struct Interval {
    double low = 0;
    double high = 0;
};

/// Red, green, blue; straight alpha is exact.
struct Pixel {
    std::array<Interval, 3> color;
    int alpha = 255;
};

/// The chain's formulas one after the other, pixel by pixel, clamped after every step. The blur is
/// the two-dimensional sum.
std::vector<Pixel> Chain(const QImage& image, const EffectSettings& settings);

/// Expects every byte of the result within half a level of the bounds, the colours of invisible
/// pixels left aside. Gives the share of pixels that the bounds leave open by more than half a
/// level: callers see to it that it is small.
double ExpectInside(const QImage& result, const std::vector<Pixel>& bounds);

/// Waves, noise and flat parts; `transparency` mixes in all alpha values, with colours where the
/// picture is invisible.
QImage TestPicture(int width, int height, bool transparency, unsigned seed = 1);

}  // namespace lumirra::oracle
