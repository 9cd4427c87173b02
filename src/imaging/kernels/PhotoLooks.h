#pragma once

#include <QString>
#include <optional>

#include "imaging/kernels/ColorSteps.h"

namespace lumirra {

/// The look of that name of `ImageTools::PhotoEffectNames`; absent for an unknown one.
std::optional<PhotoLook> FindPhotoLook(const QString& name);

}  // namespace lumirra
