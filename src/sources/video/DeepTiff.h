#pragma once

#include <QIODevice>
#include <QImage>

#include "imaging/Versions.h"

namespace lumirra {

/// The first picture of a TIFF file whose samples have 64 bits, whole numbers or floating point
/// (0 to 1), grey or red, green and blue, with or without alpha; Format_RGBA64, as stored. Null for
/// other files and when it cannot be decoded. Its size must have been checked before.
QImage ReadDeepTiff(QIODevice& device);

/// The library that reads them.
LibraryInUse TiffLibrary();

}  // namespace lumirra
