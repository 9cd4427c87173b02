#pragma once

#include "cli/Options.h"
#include "cli/SourceLook.h"
#include "settings/ControlValues.h"

namespace lumirra {

// What is decided before the work starts. Pure but for `CheckTargets`, which looks at files.

/// The values with all --set settings, for sources of size `base` (without area when there are
/// none), and the output size that follows: crop times percentage, unless a dimension is set.
/// A failure is a mistake in usage.
Outcome<ControlValues> ApplySettings(ControlValues values, const Options& options, ImageSize base);

/// Whether the values can be carried out on these sources: an output size that a GIF can have, a
/// number of frames that makes sense.
std::optional<Failure> CheckValues(const ControlValues& values, const Options& options,
                                   const SourceLook& look);

/// Whether the files to be written can be: in a folder that is there, not a source, not each other.
std::optional<Failure> CheckTargets(const Options& options);

}  // namespace lumirra
