#include "project/presets/PresetFit.h"

#include <algorithm>
#include <cmath>

#include "imaging/Words.h"
#include "output/SizeText.h"
#include "output/frames/EncoderSetup.h"

namespace lumirra {
namespace {

std::optional<Misfit> SizeMisfit(const Preset& preset, ImageSize size) {
    const ImageSize fitting = FittingSize(preset, size);
    if (fitting == size) {
        return std::nullopt;
    }
    return Misfit{Misfit::What::Size,
                  Filled(QStringLiteral("%1 takes no %2 × %3 pixels."), preset.place, size.width,
                         size.height),
                  fitting.width};
}

std::optional<Misfit> BytesMisfit(const Preset& preset, long long limit) {
    if (preset.maxBytes == 0 || (limit > 0 && limit <= preset.maxBytes)) {
        return std::nullopt;
    }
    return Misfit{Misfit::What::Bytes,
                  Filled(QStringLiteral("%1 takes at most %2, and the file may become larger."),
                         preset.place, SizeText(preset.maxBytes)),
                  static_cast<double>(preset.maxBytes)};
}

}  // namespace

std::optional<Misfit> FramesMisfit(const Preset& preset, int frames) {
    const int step = FittingStep(preset, frames);
    if (step == 1) {
        return std::nullopt;
    }
    return Misfit{Misfit::What::Frames,
                  Filled(QStringLiteral("%1 takes at most %2 frames; these are %3."), preset.place,
                         preset.maxFrames, frames),
                  static_cast<double>(step)};
}

std::optional<Misfit> SecondsMisfit(const Preset& preset, double seconds) {
    if (preset.maxSeconds == 0 || seconds <= preset.maxSeconds) {
        return std::nullopt;
    }
    return Misfit{Misfit::What::Seconds,
                  Filled(QStringLiteral("%1 takes at most %2 s; these frames take %3 s."),
                         preset.place, preset.maxSeconds, seconds),
                  std::ceil(seconds / preset.maxSeconds * 100) / 100};
}

std::vector<Misfit> MisfitsOf(const Preset& preset, const AnimationRequest& request) {
    std::vector<Misfit> misfits;
    for (auto& misfit :
         {FramesMisfit(preset, static_cast<int>(request.frames.size())),
          SecondsMisfit(preset, SecondsOf(request)), SizeMisfit(preset, CanvasOf(request)),
          BytesMisfit(preset, request.maxBytes)}) {
        if (misfit) {
            misfits.push_back(*misfit);
        }
    }
    return misfits;
}

ImageSize CanvasOf(const AnimationRequest& request) {
    ImageSize size{0, 0};
    for (const FrameInput& frame : request.frames) {
        if (frame.size) {
            size.width = std::max(size.width, frame.size->width);
            size.height = std::max(size.height, frame.size->height);
        }
    }
    if (request.maxWidth > 0 && size.width > request.maxWidth) {
        size = {static_cast<double>(request.maxWidth),
                std::max(std::round(size.height * request.maxWidth / size.width), 1.0)};
    }
    return size;
}

double SecondsOf(const AnimationRequest& request) {
    long long hundredths = 0;
    for (const FrameInput& frame : request.frames) {
        hundredths += DelayOf(frame, request);
    }
    return static_cast<double>(hundredths) / 100;
}

}  // namespace lumirra
