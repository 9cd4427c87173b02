#pragma once

#include "imaging/EffectSettings.h"
#include "imaging/Geometry.h"

namespace lumirra::ImageTools {

// Pure functions, any thread.

/// The largest centred rectangle of that ratio. A number that names none gives the empty rectangle.
ImageRect AspectCropRect(double width, double height, AspectRatio ratio);

/// Per cent in single precision products. A number that names no unit gives the empty rectangle.
ImageRect CustomCropRect(double width, double height, CropUnit unit, float x, float y,
                         float cropWidth, float cropHeight);

/// By the crop that is on; automatic before custom; the empty rectangle when none is.
ImageRect CropRectForImage(double width, double height, const EffectSettings& settings);

/// Size of the part of `rect` inside the picture; (0, 0) when there is none.
ImageSize VisibleCropSize(const ImageRect& rect, double width, double height);

/// Output size of a picture scaled relative to its crop: crop size * percent / 100 rounded half
/// away from zero in single precision. Neither crop on: the picture's own size.
ImageSize ScaledFrameSize(double width, double height, const EffectSettings& settings,
                          float resizePercent);

}  // namespace lumirra::ImageTools
