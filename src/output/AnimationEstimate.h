#pragma once

#include <stop_token>

#include "output/AnimationRequest.h"

namespace lumirra {

class AnimationEncoder;

/// The size of the file that `WriteAnimation` would write at `request.quality`, from an encoding of
/// some rows of every frame: about a fifth of the time, mostly within a tenth. Writes nothing; the
/// destination is not looked at. Small animations are encoded whole, so that the size is exact. The
/// same for any number of threads. Any thread.
Outcome<AnimationEstimate> EstimateAnimation(const AnimationEncoder& encoder,
                                             const AnimationRequest& request,
                                             const std::stop_token& stop);

}  // namespace lumirra
