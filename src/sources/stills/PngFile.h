#pragma once

#include <QIODevice>

#include "imaging/Geometry.h"
#include "sources/stills/PictureFile.h"

namespace lumirra {

/// Width and height of the header, 0 x 0 when there is none. The device's place is kept.
ImageSize PngSize(QIODevice& device);

/// The file holds more than one picture. The device's place is kept.
bool IsAnimatedPng(QIODevice& device);

/// Reads from the device's start until the file gives no more. The size must have been checked
/// before. Null when there is no row to read. Colours that are described as those of a video are
/// shown as the video's are.
PartlyRead ReadPng(QIODevice& device);

}  // namespace lumirra
