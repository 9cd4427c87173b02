#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

namespace lumirra::ImageTools {

// Conventions as in Adjustments.h.

/// "Chrome", "Fade", "Instant", "Mono", "Noir", "Process", "Tonal", "Transfer", in this order.
const QStringList& PhotoEffectNames();

/// The look of that name; an unknown name gives the same pixels.
QImage ApplyColorEffect(const QImage& image, const QString& name);

/// Gaussian blur with a standard deviation of `blur` pixels (0 none, at most 64), cut off at three
/// deviations, border pixels repeated, colours weighted by alpha; then, on the blurred picture:
/// black where the Sobel magnitude of the luminance (weights 1 2 1, border pixels repeated) reaches
/// `threshold`, elsewhere floor(c * quantization + 0.5) / quantization.
QImage ApplyCartoon(const QImage& image, float blur, float threshold, float quantization);

/// Black where the Sobel magnitude of the luminance times `edge` reaches `intensity`, else white;
/// opaque.
QImage ApplySketch(const QImage& image, float intensity, float edge);

/// Darkens towards black by smoothstep(0.5 + radius, 0.75 + radius, d), d being the distance of the
/// pixel centre's normalised coordinates (0..1 on each axis) from (0.5, 0.5).
QImage ApplyVignette(const QImage& image, float radius);

/// floor(c * levels + 0.5) / levels per channel. `levels` must not be negative; 0 gives black.
QImage Posterize(const QImage& image, int levels);

}  // namespace lumirra::ImageTools
