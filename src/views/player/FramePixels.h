#pragma once

#include <QImage>
#include <QSize>
#include <QVideoFrame>

namespace lumirra {

/// The frame's size once turned upright.
QSize UprightSize(const QVideoFrame& frame);

/// The frame, upright, at `size` (no larger than its own), into `image` (made anew unless it has
/// that size; Format_RGB32). The usual 8 and 10 bit YUV layouts are converted and shrunk in one
/// pass over the mapped planes; anything else goes through the toolkit. False when the frame
/// cannot be mapped or its planes are too small; nothing useful is in `image` then.
bool FrameToImage(const QVideoFrame& frame, const QSize& size, QImage& image);

}  // namespace lumirra
