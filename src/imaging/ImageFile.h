#pragma once

#include <QImage>
#include <QString>

#include "imaging/Outcome.h"

namespace lumirra::ImageTools {

/// Writes the picture as a working file of PNG, 8-bit RGBA; the file at `path` is replaced only
/// when the new one is complete. Fails for a null picture and for a file that cannot be written.
/// Any thread.
Outcome<Done> WritePng(const QImage& image, const QString& path);

}  // namespace lumirra::ImageTools
