#include "project/ExportRequest.h"

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
            .maxBytes = output.maxBytes};
}

AnimationRequest SizeRequest(AnimationRequest request) {
    const AnimationRequest plain;
    request.destination = plain.destination;
    request.delaySeconds = plain.delaySeconds;
    request.loopCount = plain.loopCount;
    request.fileKind = plain.fileKind;
    request.threads = plain.threads;
    for (FrameInput& frame : request.frames) {
        frame.delay.reset();
    }
    return request;
}

}  // namespace lumirra
