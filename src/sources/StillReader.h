#pragma once

#include <QString>
#include <QStringList>

#include "sources/VideoTools.h"

namespace lumirra {

/// "jpg", "jpeg", "jpe", "jp2", "jpx", "png", "tiff", "tif", "gif", "bmp": what may be opened as
/// a picture.
const QStringList& PictureExtensions();
bool IsPicture(const QString& path);

/// The largest picture that is read, in pixels.
inline constexpr long long kMaxPicturePixels = 400'000'000;

/// First picture of the file: upright by its EXIF orientation, in sRGB, 8 bits, straight alpha.
/// A truncated file gives what can be read and a problem; anything else that fails gives a null
/// picture and a problem. Any thread.
SourceImage ReadStill(const QString& path);

}  // namespace lumirra
