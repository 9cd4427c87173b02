#pragma once

#include <QImage>
#include <QPoint>

#include "imaging/Caption.h"

namespace lumirra {

/// The painted part of a caption layer: everything outside it is transparent.
struct CaptionBlock {
    QImage pixels;   ///< RGBA8888, null when nothing is to be drawn
    QPoint topLeft;  ///< its place in the frame; wholly inside
};

/// Lays the caption out for a frame of width x height and paints what lies inside the frame.
CaptionBlock PaintCaption(int width, int height, const ImageTools::CaptionStyle& style);

}  // namespace lumirra
