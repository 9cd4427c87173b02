#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "output/AnimationRequest.h"
#include "project/presets/Presets.h"

namespace lumirra {

/// Something about an animation that a place does not take.
struct Misfit {
    enum class What { Frames, Seconds, Size, Bytes };
    What what = What::Frames;
    QString problem;  ///< one sentence
    double remedy =
        0;  ///< keep every so-manieth frame; times as fast; the largest width; the limit
};

std::optional<Misfit> FramesMisfit(const Preset& preset, int frames);
std::optional<Misfit> SecondsMisfit(const Preset& preset, double seconds);

/// All that the request's GIF would not fit in, but for the bytes that come of it: its size limit
/// stands for them.
std::vector<Misfit> MisfitsOf(const Preset& preset, const AnimationRequest& request);

/// The canvas of the request's frames, centred, by the sizes that are known; no area without any.
ImageSize CanvasOf(const AnimationRequest& request);
/// How long all frames are shown.
double SecondsOf(const AnimationRequest& request);

}  // namespace lumirra
