#pragma once

#include "output/animation/Canvas.h"

namespace lumirra::gif {

/// How much an error counts at each pixel of row `y`, 1 on flat ground and less in busy texture,
/// which hides errors. `weights` has room for one row.
void MaskingRow(const Canvas& picture, int y, float* weights);

/// Part of the opaque pixels, 0..1, that have one of the 16 most frequent colours: high for screens
/// and drawings, low for what a camera saw. Judged by samples.
float FlatShare(const Canvas& picture);

}  // namespace lumirra::gif
