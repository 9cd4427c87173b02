#pragma once

#include "output/gif/search/StringSearch.h"
#include "output/gif/target/Goal.h"

namespace lumirra::gif {

/// All that the quality setting decides.
struct EncoderTuning {
    GoalTuning goal;
    SearchTuning search;
};

/// `quality` 1..100, in steps as fine as wanted.
EncoderTuning TuningFor(double quality);

}  // namespace lumirra::gif
