#include "output/GifWriter.h"

#include "output/AnimationEstimate.h"
#include "output/AnimationWriter.h"
#include "output/gif/GifEncoder.h"

namespace lumirra {

Outcome<GifResult> WriteGif(const GifRequest& request, const std::stop_token& stop,
                            const std::function<void(int, int)>& onProgress) {
    return WriteAnimation(gif::GifEncoder(), request, stop, onProgress);
}

Outcome<GifEstimate> EstimateGif(const GifRequest& request, const std::stop_token& stop) {
    return EstimateAnimation(gif::GifEncoder(), request, stop);
}

Outcome<std::optional<LimitAdvice>> AdviseOnGifLimit(const GifRequest& request,
                                                     const std::stop_token& stop) {
    return AdviseOnLimit(request,
                         [&](const GifRequest& asked) { return EstimateGif(asked, stop); });
}

}  // namespace lumirra
