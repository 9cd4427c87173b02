#pragma once

#include <QIODevice>
#include <QImage>

#include "imaging/Geometry.h"

namespace lumirra {

/// What a PNG file gives; pixels that could not be read are transparent.
struct PngPicture {
    QImage image;      ///< 8 or 16 bits a channel, straight alpha, labelled with its colour space
    double share = 0;  ///< of its pixels that were read, 1 for a whole picture
};

/// Width and height of the header, 0 x 0 when there is none. The device's place is kept.
ImageSize PngSize(QIODevice& device);

/// Reads from the device's start until the file gives no more. The size must have been checked
/// before. Null when there is no row to read.
PngPicture ReadPng(QIODevice& device);

}  // namespace lumirra
