#pragma once

#include "cli/Options.h"
#include "cli/SourceProbe.h"
#include "project/presets/PresetFit.h"
#include "settings/ControlValues.h"

namespace lumirra {

// What is decided before the work starts. Pure but for `CheckTargets`, which looks at files.

/// The values with all --set settings and then the other options, for sources of size `base`
/// (without area when there are none), and the output size that follows: crop times percentage,
/// unless a dimension is set. A failure is a mistake in usage.
Outcome<ControlValues> ApplySettings(ControlValues values, const Options& options, ImageSize base);

/// The values with the preset's size limit, unless an option gives one, and with a smaller output
/// size where the place takes no larger one. A failure says which size that was set does not fit.
Outcome<ControlValues> ApplyPreset(ControlValues values, const Preset& preset,
                                   const Options& options, ImageSize base);

/// Why that is not done, and the option that would make it fit, with the remedy for its value.
Failure RefusedAs(const Misfit& misfit, const char* option);

/// Whether the place takes that many frames; a failure says which option would make it so.
std::optional<Failure> CheckFrames(const Preset& preset, double frames);

/// Whether the values can be carried out on these sources: an output size that a GIF can have, a
/// number of frames that makes sense.
std::optional<Failure> CheckValues(const ControlValues& values, const Options& options,
                                   const SourceFacts& facts);
/// The frames that the settings and the options that leave some out make.
double PlannedFrames(const ControlValues& values, const Options& options, const SourceFacts& facts);

/// Whether the files to be written can be: in a folder that is there, not a source, not each other.
std::optional<Failure> CheckTargets(const Options& options);

}  // namespace lumirra
