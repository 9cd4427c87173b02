#pragma once

#include <QString>

#include "views/gif/GifReader.h"

namespace lumirra {

/// "24 frames · 547 × 424 px · 2.4 s · 1.9 MB"; `leftOut` frames could not be read and are not in
/// it.
QString GifInfoText(const GifInfo& info, int leftOut);

/// "Plays once", "Plays 3 times": of an animation that comes to an end; else empty.
QString GifRepeatText(const GifInfo& info);

}  // namespace lumirra
