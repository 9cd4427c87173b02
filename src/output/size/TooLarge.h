#pragma once

#include <vector>

#include "imaging/Outcome.h"

namespace lumirra {

/// A GIF that is too large at the lowest quality.
struct OversizedGif {
    long long limit = 0;
    int width = 0;
    std::vector<long long> bytesUpTo;  ///< of the file up to each image, it included
    long long bytes = 0;
};

/// Says by how much it is too large, and which width or how many of its frames would fit.
Failure StillTooLarge(const OversizedGif& gif);

}  // namespace lumirra
