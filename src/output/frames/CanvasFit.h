#pragma once

#include <QImage>

#include "imaging/Outcome.h"
#include "output/AnimationRequest.h"
#include "output/animation/AnimationEncoder.h"
#include "output/animation/Canvas.h"

namespace lumirra {

/// How frames are brought to the one canvas of a file. Whole pixels: a fractional canvas side is
/// rounded to the nearest (at least 1), a centred frame whose margin is odd sits half a pixel
/// nearer to the top and left.
struct CanvasFit {
    FrameFitMode mode = FrameFitMode::CenterOnCanvas;
    int width = 0;
    int height = 0;
    float ratio = 1;         ///< of the crop in `CropToSmallest`
    double framesWidth = 0;  ///< that is brought to `width`; 0: frames keep their size
    bool softAlpha = false;  ///< else a pixel is there or not
};

/// The canvas for the request's frames, or why there can be none: no frame is readable, or it is
/// larger than the encoder or memory allows.
Outcome<CanvasFit> FitFor(const AnimationRequest& request, const AnimationEncoder& encoder);

/// The posterised frame on the canvas, with alpha as the encoder takes it. The frame is
/// Format_RGBA8888.
Canvas PlaceOnCanvas(const QImage& frame, const CanvasFit& fit, int colorLevels);

}  // namespace lumirra
