#pragma once

#include "output/animation/AnimationEncoder.h"

namespace lumirra::gif {

/// Animated GIF: one full-size image for each picture, palettes of at most 255 colours and a
/// transparent index.
class GifEncoder final : public AnimationEncoder {
  public:
    QString Name() const override;
    AnimationLimits Limits() const override;
    EncodeSummary Encode(const AnimationOptions& options, const AnimationPorts& ports,
                         const std::stop_token& stop) const override;
    double UnchangedBytes(long long pixels) const override;
};

}  // namespace lumirra::gif
