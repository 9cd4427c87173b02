#pragma once

#include <QImage>
#include <QRect>

#include "imaging/EffectSettings.h"
#include "imaging/Geometry.h"

namespace lumirra::ImageTools {

// Conventions as in Adjustments.h.

/// The whole pixels that a crop keeps, as a rectangle with its origin at the top left. Width and
/// height are the visible size rounded half up, the origin is rounded and moved inside, so that a
/// third of a picture keeps its rounded share and 100 per cent of a crop is never resampled. Empty
/// where `CropImage` leaves the picture whole for want of a usable rectangle: narrower or lower
/// than one pixel, or wholly outside.
QRect WholePixelCrop(const ImageRect& rect, int width, int height);

/// The part of the picture inside `rect` (bottom-left origin) by `WholePixelCrop`; the whole
/// picture where that is empty.
QImage CropImage(const QImage& image, const ImageRect& rect);

/// The whole picture stretched to width x height (fractions dropped). Down: area-aware filter in
/// premultiplied colour, no aliasing; up: smooth; same size: an exact copy. Null when the size has
/// no area, is not a number, is longer than a frame may be or more than a source may have. Fully
/// transparent pixels become (0, 0, 0, 0).
QImage DrawScaled(const QImage& image, double width, double height, int threads = 1);

/// Crop by `CropRectForImage` on the picture's own size, then `DrawScaled`.
QImage CropAndResizeCapturedFrame(const QImage& image, const CaptureSettings& settings,
                                  int threads = 1);

}  // namespace lumirra::ImageTools
