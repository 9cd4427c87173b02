#include "output/frames/EncoderSetup.h"

#include <algorithm>
#include <cmath>

namespace lumirra {

namespace {

constexpr int kMostLoops = 65535;

std::optional<std::uint16_t> LoopField(const AnimationRequest& request) {
    if (request.repeatForever) {
        return std::uint16_t{0};
    }
    if (!(request.loopCount > 0)) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(
        std::clamp<double>(std::round(request.loopCount), 1, kMostLoops));
}

}  // namespace

int DelayHundredths(double seconds) {
    const double hundredths = std::round(seconds * 100);
    return hundredths >= 1 ? static_cast<int>(std::min<double>(hundredths, kLongestDelay)) : 1;
}

AnimationOptions OptionsFor(const AnimationRequest& request, const CanvasFit& fit) {
    AnimationOptions options;
    options.width = fit.width;
    options.height = fit.height;
    options.entries = static_cast<int>(request.frames.size());
    options.loops = LoopField(request);
    options.quality = request.quality;
    options.threads = request.threads;
    return options;
}

int DelayOf(const FrameInput& frame, const AnimationRequest& request) {
    return frame.delay ? std::clamp(*frame.delay, 1, kLongestDelay)
                       : DelayHundredths(request.delaySeconds);
}

Failure NothingReadable() {
    return {Failure::Kind::Unreadable, QStringLiteral("None of the frames can be read."), {}};
}

Failure NoMemory(const AnimationEncoder& encoder) {
    return {Failure::Kind::TooLarge,
            QStringLiteral("There is not enough memory for the %1.").arg(encoder.Name()),
            {}};
}

}  // namespace lumirra
