#pragma once

#include <QString>
#include <vector>

#include "output/AnimationRequest.h"
#include "project/FrameList.h"
#include "settings/ControlValues.h"

namespace lumirra {

// What is written and how, for the window and the command line alike. Pure, any thread.

/// The files of the list's frames, with their sizes and their own delays.
std::vector<FrameInput> FramesOf(const FrameList& list);

/// Those frames by the output settings: delay, loops, colours, quality and size limit. The caller
/// adds how frames of different sizes are brought together, and where the file goes.
AnimationRequest ExportRequest(const ControlValues& values, std::vector<FrameInput> frames);

/// The request with nothing but what the content of the file depends on, so that requests that come
/// to the same bytes are equal.
AnimationRequest ContentRequest(AnimationRequest request);

/// The request with nothing but what the size of the file depends on, so that requests that come to
/// the same size are equal.
AnimationRequest SizeRequest(AnimationRequest request);

}  // namespace lumirra
