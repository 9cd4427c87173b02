#pragma once

#include <QImage>
#include <QString>

#include "imaging/Geometry.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// Size of the picture from the file's header. One pixel is one point, whatever density the file
/// names.
Outcome<ImageSize> ReadFrameSize(const QString& path);

/// The picture as Format_RGBA8888 in sRGB. Plain 8-bit PNG files take the short way. Throws
/// std::bad_alloc: a frame is not left out for want of memory.
Outcome<QImage> ReadFrame(const QString& path);

}  // namespace lumirra
