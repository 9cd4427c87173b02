#pragma once

#include <QImage>
#include <QString>

#include "imaging/Outcome.h"

namespace lumirra {

enum class ImageFileFormat { Jpeg = 0, Png = 1, Tiff = 2, Gif = 3, Bmp = 4 };

namespace ImageTools {

/// Writes the picture; the file at `path` is replaced only when the new one is complete.
/// `compressionFactor` 0..1 is the JPEG quality and ignored by the others. PNG: 8-bit RGBA, fast
/// setting. GIF: up to 255 colours kept exactly, more reduced with dither. JPEG and BMP, which know
/// no transparency, show the picture on white. Any thread. A null picture, an unknown format or a
/// file that cannot be written: false; `WriteImage` tells why.
bool SaveImage(const QImage& image, const QString& path, ImageFileFormat format,
               double compressionFactor);
Outcome<Done> WriteImage(const QImage& image, const QString& path, ImageFileFormat format,
                         double compressionFactor);

}  // namespace ImageTools
}  // namespace lumirra
