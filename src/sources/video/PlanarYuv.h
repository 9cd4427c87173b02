#pragma once

#include <QImage>

#include "sources/video/FrameConverter.h"

namespace lumirra {

/// Whether `PlanarYuvPicture` takes the frame: 8-bit planes, chroma at full or half size.
bool IsPlanarYuv(const AVFrame& frame, const FrameColor& color);

/// The frame as it is stored, in Format_RGBA8888. Chroma is interpolated between its samples
/// where they lie, and everything is rounded once. Several times as fast as the general scaler at
/// this accuracy.
QImage PlanarYuvPicture(const AVFrame& frame, const FrameColor& color);

}  // namespace lumirra
