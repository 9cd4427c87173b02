#pragma once

#include <stop_token>

#include "cli/Options.h"
#include "output/FrameSizes.h"

namespace lumirra {

class Console;

/// The frames at these paths in the order and with the delays that the options ask for: --delays,
/// --every, --find-loop, --crossfade, --reverse, --bounce, --speed, --delay-last, one after the
/// other. New pictures go to `folder`. `commonDelay`: of frames without a delay of their own, in
/// hundredths of a second.
Outcome<std::vector<FrameInput>> EditFrames(const Options& options, QStringList paths,
                                            int commonDelay, const QString& folder,
                                            const std::stop_token& stop, Console& console);

/// How many frames these options make of that many, before --find-loop leaves some out.
double FramesAfterEditing(const Options& options, double frames);

}  // namespace lumirra
