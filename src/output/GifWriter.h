#pragma once

#include <functional>
#include <stop_token>

#include "output/AnimationRequest.h"
#include "output/size/LimitAdvice.h"

namespace lumirra {

using GifRequest = AnimationRequest;
using GifResult = AnimationResult;
using GifEstimate = AnimationEstimate;

/// `WriteAnimation` as a GIF.
Outcome<GifResult> WriteGif(const GifRequest& request, const std::stop_token& stop,
                            const std::function<void(int, int)>& onProgress);

/// `EstimateAnimation` of a GIF.
Outcome<GifEstimate> EstimateGif(const GifRequest& request, const std::stop_token& stop);

/// `AdviseOnLimit` for a GIF: about ten estimates.
Outcome<std::optional<LimitAdvice>> AdviseOnGifLimit(const GifRequest& request,
                                                     const std::stop_token& stop);

}  // namespace lumirra
