#pragma once

#include <QIODevice>
#include <QImage>

#include "imaging/Geometry.h"
#include "sources/stills/PictureFile.h"

namespace lumirra {

/// Width and height of the header, 0 x 0 when there is none that can be read. The device's place,
/// its start, is kept.
ImageSize BmpSize(QIODevice& device);

/// Reads from the device's start until the file gives no more: any header, row order and packing
/// but pictures of other formats and fax codes. The size must have been checked before.
PartlyRead ReadBmp(QIODevice& device);

}  // namespace lumirra
