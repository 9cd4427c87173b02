#pragma once

#include <QImage>
#include <QStringList>

#include "imaging/Outcome.h"
#include "output/GifSizes.h"
#include "output/gif/Picture.h"

namespace lumirra {

/// How frames are brought to the one canvas of a file. Whole pixels: a fractional canvas side is
/// rounded to the nearest (at least 1), a centred frame whose margin is odd sits half a pixel
/// nearer to the top and left.
struct CanvasFit {
    FrameFitMode mode = FrameFitMode::CenterOnCanvas;
    int width = 0;
    int height = 0;
    float ratio = 1;  ///< of the crop in `CropToSmallest`
};

/// The canvas for these frames, or why there can be none: no frame is readable, or it is too large.
Outcome<CanvasFit> FitFor(const QStringList& framePaths, FrameFitMode mode);

/// The posterised frame on the canvas. The frame is Format_RGBA8888.
gif::Picture PlaceOnCanvas(const QImage& frame, const CanvasFit& fit, int colorLevels);

}  // namespace lumirra
