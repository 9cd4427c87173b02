#pragma once

#include <QImage>
#include <optional>

#include "imaging/kernels/ColorSteps.h"

namespace lumirra {

/// The steps, then the vignette, on every pixel; the same picture when there is nothing to do. The
/// picture is RGBA8888 and has area; null when there is no memory for the result.
QImage ApplyColorSteps(const QImage& image, const ColorSteps& steps,
                       const std::optional<Vignette>& vignette, int threads);

/// rgb = mix(base, overlay, overlay alpha * mix), alpha of the base. Both pictures are RGBA8888 and
/// of the same size; null when there is no memory for the result. A `mix` that is no number is 0.
QImage BlendPictures(const QImage& base, const QImage& overlay, float mix, int threads);

}  // namespace lumirra
