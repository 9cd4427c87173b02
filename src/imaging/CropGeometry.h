#pragma once

#include "imaging/EffectSettings.h"
#include "imaging/Geometry.h"

namespace lumirra::ImageTools {

// Pure functions, any thread.

/// The largest centred rectangle of aspect ratio 1:1, 4:3, 3:2 or 16:9 (index 0..3; turned for a
/// picture higher than wide). Any other index gives the empty rectangle.
ImageRect AspectCropRect(double width, double height, int aspectIndex);

/// Unit 0: per cent of width and height (single precision products); unit 1: pixels; any other unit
/// gives the empty rectangle.
ImageRect CustomCropRect(double width, double height, int unit, float x, float y, float cropWidth,
                         float cropHeight);

/// By the crop that is on; automatic before custom; the empty rectangle when none is.
ImageRect CropRectForImage(double width, double height, const EffectSettings& settings);

/// Size of the part of `rect` inside the picture; (0, 0) when there is none.
ImageSize VisibleCropSize(const ImageRect& rect, double width, double height);

/// Output size of a picture scaled relative to its crop: crop size * percent / 100 rounded half
/// away from zero in single precision. Neither crop on: the picture's own size.
ImageSize ScaledFrameSize(double width, double height, const EffectSettings& settings,
                          float resizePercent);

}  // namespace lumirra::ImageTools
