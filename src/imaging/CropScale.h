#pragma once

#include <QImage>

#include "imaging/EffectSettings.h"
#include "imaging/Geometry.h"

namespace lumirra::ImageTools {

// Conventions as in Adjustments.h.

/// The part of the picture inside `rect` (bottom-left origin). Unchanged when the rectangle is
/// narrower or lower than one pixel or lies wholly outside. Fractional edges: whole pixels only.
QImage CropImage(const QImage& image, const ImageRect& rect);

/// The whole picture stretched to width x height (fractions dropped). Down: area-aware filter in
/// premultiplied colour, no aliasing; up: smooth; same size: an exact copy. Null when the size has
/// no area or exceeds the ceiling of `kMaxSide`.
QImage DrawScaled(const QImage& image, double width, double height, int threads = 1);

/// Crop by `CropRectForImage` on the picture's own size, then `DrawScaled`.
QImage CropAndResizeCapturedFrame(const QImage& image, const CaptureSettings& settings,
                                  int threads = 1);

}  // namespace lumirra::ImageTools
