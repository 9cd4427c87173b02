#pragma once

#include <stop_token>

#include "imaging/Outcome.h"
#include "output/GifWriter.h"

namespace lumirra {

struct GifEstimate {
    int frames = 0;  ///< images that the file would have
    int width = 0;
    int height = 0;
    long long bytes = 0;  ///< at the quality asked for, whatever the limit
};

/// The size of the file that `WriteGif` would write at `request.quality`, from an encoding of some
/// rows of every frame: about a fifth of the time, mostly within a tenth. Writes nothing; the
/// destination is not looked at. Small animations are encoded whole, so that the size is exact.
/// The same for any number of threads. Any thread.
Outcome<GifEstimate> EstimateGif(const GifRequest& request, const std::stop_token& stop);

}  // namespace lumirra
