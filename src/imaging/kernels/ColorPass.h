#pragma once

#include <QImage>
#include <optional>

#include "imaging/kernels/ColorSteps.h"

namespace lumirra {

/// The steps, then the vignette, on every pixel; the same picture when there is nothing to do. The
/// picture is RGBA8888 and has area; null when there is no memory for the result.
QImage ApplyColorSteps(const QImage& image, const ColorSteps& steps,
                       const std::optional<Vignette>& vignette, int threads);

}  // namespace lumirra
