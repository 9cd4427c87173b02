#pragma once

#include <QImage>
#include <QString>

#include "imaging/Geometry.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// Most pixels of one frame or canvas: what the encoder keeps in memory of it stays below 3 GB.
constexpr long long kMaxFramePixels = 50'000'000;
/// Longest side of a GIF.
constexpr int kMaxGifSide = 65535;

/// Size of the picture from the file's header. One pixel is one point, whatever density the file
/// names.
Outcome<ImageSize> ReadFrameSize(const QString& path);

/// The picture as Format_RGBA8888 in sRGB. Plain 8-bit PNG files take the short way.
Outcome<QImage> ReadFrame(const QString& path);

}  // namespace lumirra
