#pragma once

#include <QImage>

namespace lumirra::ImageTools {

// Pictures here and in every operation of this room are `QImage`s of Format_RGBA8888, straight
// (not premultiplied) alpha, device pixel ratio 1; other formats are converted first. The result is
// a new picture of the same size, the input is never changed, a null picture gives a null picture.
// Any thread. Channels are 0..1 in the formulas and clamped to that range by each operation; alpha
// is kept. At its neutral value an operation returns the same pixels bit for bit.

/// rgb + brightness. Neutral 0.
QImage AdjustBrightness(const QImage& image, float brightness);

/// (rgb - 0.5) * contrast + 0.5. Neutral 1.
QImage AdjustContrast(const QImage& image, float contrast);

/// mix(L, rgb, saturation) with the luminance L = 0.2125 R + 0.7154 G + 0.0721 B. Neutral 1.
QImage AdjustSaturation(const QImage& image, float saturation);

/// rgb * 2^exposure. Neutral 0.
QImage AdjustExposure(const QImage& image, float exposure);

/// rgb^gamma per channel. Neutral 1.
QImage AdjustGamma(const QImage& image, float gamma);

/// Rotates the hue in YIQ space by `degrees` (modulo 360); positive turns red towards yellow and
/// green. Neutral 0.
QImage AdjustHue(const QImage& image, float degrees);

}  // namespace lumirra::ImageTools
