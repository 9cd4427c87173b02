#pragma once

#include <QByteArray>
#include <QImage>
#include <optional>

namespace lumirra {

/// The whole GIF file of one RGBA8888 picture. Up to 255 different colours are kept exactly; more
/// are reduced to 255 by median cut and error diffusion. Pixels less than half opaque become
/// transparent, the others opaque. Absent when a side is beyond the format's 65535.
std::optional<QByteArray> EncodeStillGif(const QImage& rgba);

}  // namespace lumirra
