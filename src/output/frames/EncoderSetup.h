#pragma once

#include "output/AnimationRequest.h"
#include "output/animation/AnimationEncoder.h"
#include "output/frames/CanvasFit.h"

namespace lumirra {

/// The encoder's own view of a request on that canvas.
AnimationOptions OptionsFor(const AnimationRequest& request, const CanvasFit& fit);

/// Hundredths of a second that the frame is shown.
int DelayOf(const FrameInput& frame, const AnimationRequest& request);

Failure NothingReadable();
Failure NoMemory(const AnimationEncoder& encoder);

}  // namespace lumirra
