#pragma once

#include <QIODevice>
#include <QImage>

namespace lumirra {

/// The picture of a JPEG 2000 file, read from the device's start; RGBA8888, null when it cannot be
/// decoded. Its size must have been checked before.
QImage ReadJpeg2000(QIODevice& device);

}  // namespace lumirra
