#include "output/gif/GifEncoder.h"

#include <cmath>

#include "output/gif/FrameScheduler.h"

namespace lumirra::gif {

QString GifEncoder::Name() const {
    return QStringLiteral("GIF");
}

AnimationLimits GifEncoder::Limits() const {
    return {.longestSide = 65535, .softAlpha = false};
}

EncodeSummary GifEncoder::Encode(const AnimationOptions& options, const AnimationPorts& ports,
                                 const std::stop_token& stop) const {
    return FrameScheduler(options, ports, stop).Run();
}

/// An image of the transparent index alone: each LZW string is one pixel longer than the one
/// before, so that the bytes grow with the root of the pixels.
double GifEncoder::UnchangedBytes(long long pixels) const {
    constexpr int kFirstCode = 258;
    constexpr int kLastCode = 4095;
    double bits = 0;
    int code = kFirstCode;
    for (long long length = 1; pixels > 0; pixels -= length) {
        bits += std::floor(std::log2(code)) + 1;
        if (code < kLastCode) {
            ++code;
            ++length;
        }
    }
    return bits / 8;
}

}  // namespace lumirra::gif
