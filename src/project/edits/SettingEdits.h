#pragma once

#include <QString>
#include <variant>

#include "project/Edit.h"
#include "settings/ProfileText.h"

namespace lumirra::edits {

// Decisions about the settings. Pure; each gives the edit to apply to that document.

/// What a person made of one control: a slider's, stepper's or field's number, a state, an item's
/// index, the text of a field that was committed, a colour.
using ControlInput = std::variant<float, bool, int, QString, TextColor>;

/// The control was changed: its rule is applied, its partner follows, and what its row says about
/// pictures, dimensions and the mark is done. `input` is of the control's kind.
Edit ChangeControl(const Document& document, Control control, const ControlInput& input);

/// The group's reset command.
Edit ResetSettings(const Document& document, ResetGroup group);

/// The settings of a profile that was read from `path`; `title` is the window's from then on.
Edit LoadSettings(const Document& document, const Profile& profile, const QString& path,
                  const QString& title);

/// Everything as in a fresh start, but for the aspect ratio, which stays as chosen.
Edit NewProject(const Document& document);

}  // namespace lumirra::edits

namespace lumirra {

/// The document of a fresh start.
Document FreshDocument();

/// The picture shown has that size and tells that of its video: the dimensions follow.
Document WithFacts(Document document, const PictureFacts& facts);

}  // namespace lumirra
