#include "output/frames/EncoderSetup.h"

#include <algorithm>
#include <cmath>

namespace lumirra {

namespace {

constexpr int kLargestField = 65535;

int DelayHundredths(double seconds) {
    const double hundredths = std::round(seconds * 100);
    return hundredths >= 1 ? static_cast<int>(std::min<double>(hundredths, kLargestField)) : 1;
}

std::optional<std::uint16_t> LoopField(const GifRequest& request) {
    if (request.repeatForever) {
        return std::uint16_t{0};
    }
    if (!(request.loopCount > 0)) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(
        std::clamp<double>(std::round(request.loopCount), 1, kLargestField));
}

}  // namespace

gif::EncoderOptions OptionsFor(const GifRequest& request, const CanvasFit& fit) {
    gif::EncoderOptions options;
    options.width = fit.width;
    options.height = fit.height;
    options.entries = static_cast<int>(request.framePaths.size());
    options.delayHundredths = DelayHundredths(request.delaySeconds);
    options.loops = LoopField(request);
    options.quality = request.quality;
    options.threads = request.threads;
    return options;
}

Failure NothingReadable() {
    return {Failure::Kind::Unreadable, QStringLiteral("None of the frames can be read."), {}};
}

Failure NoMemory() {
    return {Failure::Kind::TooLarge, QStringLiteral("There is not enough memory for the GIF."), {}};
}

}  // namespace lumirra
