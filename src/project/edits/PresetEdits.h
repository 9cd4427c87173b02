#pragma once

#include <optional>

#include "project/Edit.h"
#include "project/presets/Presets.h"

namespace lumirra::edits {

// Decisions about where the GIF is to go. Pure; each gives the edit to apply to that document.

/// The limits of the preset chosen before are taken off, and those of this one put in force: the
/// size limit, a largest width where the frames' canvas is too large, and no more frames to be
/// taken from a video than may be. Nothing: no preset.
Edit ChoosePreset(const Document& document, const std::optional<Preset>& preset);

/// The GIF becomes no wider than that.
Edit LimitWidth(const Document& document, int width);

}  // namespace lumirra::edits
