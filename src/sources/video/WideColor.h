#pragma once

#include <QImage>

#include "sources/video/Ffmpeg.h"

namespace lumirra {

/// Brings a Format_RGBA64 picture in BT.2020 or P3 primaries, PQ, HLG or standard transfer, to
/// Format_RGBA8888 in sRGB. HDR: the reference white of 203 cd/m2 becomes the white of the
/// result, less a little room in which highlights up to 1000 cd/m2 keep their shape.
QImage ToStandardColor(const QImage& deep, AVColorTransferCharacteristic transfer,
                       AVColorPrimaries primaries);

}  // namespace lumirra
