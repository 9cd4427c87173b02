#pragma once

#include <QImage>
#include <QSize>
#include <QVideoFrame>

#include "imaging/DisplayTransform.h"

namespace lumirra {

/// The frame, shown as `display` says (what the frame itself says of its turn is left aside), at
/// `size`, into `image` (made anew unless it has
/// that size; Format_RGB32). The usual 8 and 10 bit YUV layouts are converted and shrunk in one
/// pass over the mapped planes; anything else goes through the toolkit. False when the frame
/// cannot be mapped, its planes are too small or memory is; nothing useful is in `image` then.
bool FrameToImage(const QVideoFrame& frame, const DisplayTransform& display, const QSize& size,
                  QImage& image);

}  // namespace lumirra
