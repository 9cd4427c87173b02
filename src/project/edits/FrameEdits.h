#pragma once

#include <QHash>
#include <QList>
#include <functional>
#include <optional>

#include "imaging/Outcome.h"
#include "project/Edit.h"
#include "project/sequence/PictureSignature.h"

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

/// Frames of these ids get the picture, size and origin of others; delays and selection stay.
Edit RefreshFrames(const Document& document, const QHash<FrameId, Frame>& rendered);

/// The frames at these indices, which lie outside of a loop, go.
Edit KeepLoop(const Document& document, const QList<int>& outside);
/// As `RefreshFrames`; and the first `length` frames, which the others fade into, go.
Edit CrossFadeEnds(const Document& document, int length, const QHash<FrameId, Frame>& faded);

/// The frame last clicked one place towards the start or the end; nothing changes at the end of the
/// list or when none was clicked.
Edit MoveFrameUp(const Document& document);
Edit MoveFrameDown(const Document& document);

/// The selected frames together, in their order, in front of the frame with that index, or at the
/// end.
Edit MoveFramesTo(const Document& document, int index);
/// Each selected frame one place on; those at the end of the list already stay.
Edit MoveFramesUp(const Document& document);
Edit MoveFramesDown(const Document& document);

/// Removes the selected frames.
Edit CutFrames(const Document& document);
/// Behind the last selected frame, or at the end; they become the selection.
Edit PasteFrames(const Document& document, const QList<Frame>& frames);

/// How long each of the selected frames, or of all when none is selected, is shown; absent: it
/// follows the setting.
Edit SetFrameDelay(const Document& document, std::optional<int> hundredths);
/// Those frames `factor` times as fast, so that every running sum of their delays is right within
/// half a hundredth. Fails as `AtSpeed` does.
Outcome<Edit> ChangeSpeed(const Document& document, double factor);

/// Of the selected frames, or of all when fewer than two are selected, the first and every
/// `step`-th after it stay, with the delays they have.
Edit KeepEveryNth(const Document& document, int step);
/// Of those frames each that differs from the one before it that stays by no more than `threshold`
/// levels goes; the one that stays is shown as much longer. What stands between selected frames
/// parts them. `pictures`: what the frames look like; one that is not in it stays.
Edit RemoveNearDuplicates(const Document& document,
                          const QHash<FrameId, PictureSignature>& pictures, double threshold);

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
