#pragma once

#include "output/GifWriter.h"
#include "output/frames/CanvasFit.h"
#include "output/gif/Encoder.h"

namespace lumirra {

/// The encoder's own view of a request on that canvas.
gif::EncoderOptions OptionsFor(const GifRequest& request, const CanvasFit& fit);

Failure NothingReadable();
Failure NoMemory();

}  // namespace lumirra
