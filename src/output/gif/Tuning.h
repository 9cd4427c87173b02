#pragma once

#include "output/gif/denoise/TemporalDenoiser.h"
#include "output/gif/lzw/LossyLzwSearch.h"

namespace lumirra::gif {

/// All that the quality setting decides.
struct EncoderTuning {
    DenoiseTuning denoise;
    SearchTuning search;
};

/// `quality` 1..100, in steps as fine as wanted.
EncoderTuning TuningFor(double quality);

}  // namespace lumirra::gif
