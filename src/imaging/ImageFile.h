#pragma once

#include <QImage>
#include <QString>

#include "imaging/Outcome.h"

namespace lumirra {

enum class ImageFileFormat { Jpeg = 0, Png = 1, Tiff = 2, Gif = 3, Bmp = 4 };

namespace ImageTools {

/// Writes the picture; the file at `path` is replaced only when the new one is complete.
/// `compressionFactor` 0..1 is the JPEG quality and ignored by the others. PNG: 8-bit RGBA, fast
/// setting. Any thread. `WriteImage` tells why it failed.
bool SaveImage(const QImage& image, const QString& path, ImageFileFormat format,
               double compressionFactor);
Outcome<Done> WriteImage(const QImage& image, const QString& path, ImageFileFormat format,
                         double compressionFactor);

}  // namespace ImageTools
}  // namespace lumirra
