#pragma once

#include <QString>

#include "sources/VideoTools.h"

namespace lumirra {

/// First picture of the file, whatever its extension: upright by its EXIF orientation, in sRGB,
/// 8 bits, straight alpha, one pixel for one pixel of the file; where further pages are larger,
/// stretched to their `PixelSize`. A JPEG or PNG file that is cut
/// short gives what can be read and a problem that says how much; anything else that fails gives a
/// null picture and a problem. The size is checked before memory is asked for, and a pipe or device
/// is never waited for. Any thread.
SourceImage ReadStill(const QString& path);

struct PictureFile;
/// An animation, or a file of several pages; the variants of an icon do not count.
bool HoldsManyPictures(const PictureFile& file);

}  // namespace lumirra
