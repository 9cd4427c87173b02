#pragma once

#include <QImage>
#include <optional>

#include "imaging/EffectSettings.h"

namespace lumirra::ImageTools {

// `threads` is how many cores one call may use; the pixels do not depend on it. Any thread.

/// Adjustments (always), then photo effect, cartoon, sketch and vignette (each when on). Computed
/// in float with one rounding at the end; at reset values the same pixels as the source.
QImage ApplyEffectChain(const QImage& image, const EffectSettings& settings, int threads = 1);

/// What the window shows: the chain, a white veil of 60 % outside the crop rectangle, the caption
/// placed on the whole picture. The size is the source's. A picture without area is given back as
/// it is.
QImage RenderPreviewImage(const QImage& image, const EffectSettings& settings, int threads = 1);

/// Chain, caption, crop, then scaled to exactly width x height (fractions dropped). Null when the
/// picture or the size has no area.
QImage RenderFrameToSize(const QImage& image, const EffectSettings& settings, double width,
                         double height, int threads = 1);

/// Chain, caption, crop, then scaled to `ScaledFrameSize`. Null as above.
QImage RenderFrameScaled(const QImage& image, const EffectSettings& settings, float resizePercent,
                         int threads = 1);

}  // namespace lumirra::ImageTools
