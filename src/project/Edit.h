#pragma once

#include <QFlags>
#include <QString>
#include <optional>

#include "project/Document.h"

namespace lumirra {

/// What changed in a project, and what that asks of whoever shows it.
enum class ProjectChange {
    Settings = 1 << 0,
    Source = 1 << 1,     ///< another video, other pictures, another one of them, or markers
    Position = 1 << 2,   ///< in the video
    Frames = 1 << 3,     ///< the list itself
    Selection = 1 << 4,  ///< of frames
    Identity = 1 << 5,   ///< profile, title, mark of unsaved changes
    Facts = 1 << 6,
    History = 1 << 7,  ///< what can be undone and redone
    Picture = 1 << 8,  ///< the picture shown has to be rendered again
    Held = 1 << 9,     ///< by a knob that is held: the next change follows soon
};
Q_DECLARE_FLAGS(ProjectChanges, ProjectChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(ProjectChanges)

/// The parts in which two documents differ. What is learned of the picture is no part of it.
ProjectChanges DifferenceOf(const Document& before, const Document& after);

/// One decision of a person's: the document as it is afterwards. Made by the functions in
/// `project/edits/`, applied by `Project::Apply`.
struct Edit {
    QString label;  ///< of the step that undoes it: "Brightness", "Remove Frames"
    Document after;
    bool marks = false;    ///< counts as an unsaved change
    bool picture = false;  ///< the picture shown has to be rendered again
    bool held = false;     ///< by a knob that is held
    /// Edits of the same kind that follow each other are one step; 0: always a step of its own.
    int mergeKey = 0;
};

}  // namespace lumirra
