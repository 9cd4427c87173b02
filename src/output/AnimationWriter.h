#pragma once

#include <functional>
#include <stop_token>

#include "output/AnimationRequest.h"

namespace lumirra {

class AnimationEncoder;

/// Writes one animation: one full-canvas picture for each readable frame. The file at
/// `destination` is replaced only when the new one is complete; on failure or stop it is untouched.
/// With `maxBytes` the quality is lowered as far as needed: the frames are encoded several times,
/// and a file that the limit binds is at most 4 % smaller than it. When even quality 1 is too much,
/// the failure (`TooLarge`) says by how much and what would fit.
/// `onProgress`(done, total) is called on the calling thread; `total` grows when the frames have to
/// be encoded once more.
Outcome<AnimationResult> WriteAnimation(const AnimationEncoder& encoder,
                                        const AnimationRequest& request,
                                        const std::stop_token& stop,
                                        const std::function<void(int, int)>& onProgress);

}  // namespace lumirra
