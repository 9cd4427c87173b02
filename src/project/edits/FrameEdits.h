#pragma once

#include <QList>
#include <functional>

#include "project/Edit.h"

namespace lumirra::edits {

// Decisions about the frame list. Pure; each gives the edit to apply to that document. None of them
// counts as an unsaved change: frames are no part of a profile.

/// At the end; then the frame last clicked is the selection, as after every change of the list.
Edit AppendFrames(const Document& document, const QList<Frame>& frames);

Edit RemoveSelectedFrames(const Document& document);
Edit RemoveAllFrames(const Document& document);

/// The selected frames, or all when fewer than two are selected, in reverse order.
Edit ReverseFrames(const Document& document);
/// Those frames once more behind the last of them, reversed and without their ends. `copy` makes a
/// frame of its own of a frame.
Edit ForthAndBack(const Document& document, const std::function<Frame(const Frame&)>& copy);
/// The selected frames once more, behind the last of them.
Edit DuplicateFrames(const Document& document, const std::function<Frame(const Frame&)>& copy);

/// The frame last clicked one place towards the start or the end; nothing changes at the end of the
/// list or when none was clicked.
Edit MoveFrameUp(const Document& document);
Edit MoveFrameDown(const Document& document);

}  // namespace lumirra::edits

namespace lumirra {

// What is selected is no decision: for `Project::Follow`.

/// A click on the frame with that index; with `commandHeld` it joins or leaves the selection.
Document WithFrameClicked(Document document, int index, bool commandHeld);
/// From the frame last clicked to that one.
Document WithSelectionTo(Document document, int index);
Document WithAllSelected(Document document);
Document WithNoneSelected(Document document);

}  // namespace lumirra
