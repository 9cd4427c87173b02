#pragma once

#include "output/gif/Picture.h"

namespace lumirra::gif {

/// How much an error counts at each pixel of row `y`, 1 on flat ground and less in busy texture,
/// which hides errors. `weights` has room for one row.
void MaskingRow(const Picture& picture, int y, float* weights);

}  // namespace lumirra::gif
