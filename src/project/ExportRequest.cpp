#include "project/ExportRequest.h"

#include <utility>

#include "output/frames/EncoderSetup.h"
#include "settings/SettingsRecords.h"

namespace lumirra {

std::vector<FrameInput> FramesOf(const FrameList& list) {
    std::vector<FrameInput> frames;
    frames.reserve(static_cast<std::size_t>(list.Count()));
    for (const Frame& frame : list.Frames()) {
        FrameInput input{.path = frame.Path(), .size = {}, .delay = frame.delay};
        if (!frame.size.isEmpty()) {
            input.size = ImageSize{static_cast<double>(frame.size.width()),
                                   static_cast<double>(frame.size.height())};
        }
        frames.push_back(std::move(input));
    }
    return frames;
}

AnimationRequest ExportRequest(const ControlValues& values, std::vector<FrameInput> frames) {
    const OutputSettings output = OutputSettingsOf(values);
    return {.frames = std::move(frames),
            .destination = {},
            .colorLevels = output.colorLevels,
            .delaySeconds = output.delaySeconds,
            .loopCount = output.loopCount,
            .repeatForever = output.repeatForever,
            .quality = output.quality,
            .maxBytes = output.maxBytes,
            .maxWidth = output.maxWidth};
}

AnimationRequest ContentRequest(AnimationRequest request) {
    for (FrameInput& frame : request.frames) {
        frame.delay = DelayOf(frame, request);
    }
    const AnimationRequest plain;
    request.destination = plain.destination;
    request.delaySeconds = plain.delaySeconds;
    request.loopCount = request.repeatForever ? plain.loopCount : request.loopCount;
    request.fileKind = plain.fileKind;
    request.threads = plain.threads;
    return request;
}

AnimationRequest SizeRequest(AnimationRequest request) {
    request = ContentRequest(std::move(request));
    request.loopCount = AnimationRequest().loopCount;
    for (FrameInput& frame : request.frames) {
        frame.delay.reset();
    }
    return request;
}

}  // namespace lumirra
