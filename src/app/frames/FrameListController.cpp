#include "app/frames/FrameListController.h"

#include <QSet>
#include <utility>
#include <vector>

#include "app/dialogs/Dialogs.h"
#include "app/session/Session.h"
#include "project/FrameStore.h"
#include "project/Project.h"
#include "project/edits/FrameEdits.h"
#include "ui_MainWindow.h"

namespace lumirra {

FrameListController::FrameListController(Project& project, Session& session, Dialogs& dialogs,
                                         Ui::MainWindow& ui)
    : project_(project), session_(session), dialogs_(dialogs), ui_(ui) {
    connect(ui_.scrollViewFrames, &ScrollViewFrames::UpdateSelectionScrollViewFrames, this,
            &FrameListController::Click);
    connect(ui_.scrollViewFrames, &ScrollViewFrames::SelectionExtended, this,
            [this](int tag) { project_.Follow(WithSelectionTo(project_.State(), tag)); });
    connect(ui_.scrollViewFrames, &ScrollViewFrames::SelectionDropped, this,
            [this] { project_.Follow(WithNoneSelected(project_.State())); });
    connect(ui_.scrollViewFrames, &ScrollViewFrames::FramesDragged, this,
            [this](int index) { ApplyInView(edits::MoveFramesTo(project_.State(), index)); });
    connect(&project, &Project::Changed, this, &FrameListController::Follow);
}

void FrameListController::Follow(ProjectChanges what) {
    if (what & ProjectChange::Frames) {
        RebuildFrameStrip();
    }
    if (what & (ProjectChange::Frames | ProjectChange::Selection)) {
        RefreshFrameSelection();
    }
}

void FrameListController::RebuildFrameStrip() {
    const FrameList& frames = project_.State().frames;
    QStringList thumbnails;
    thumbnails.reserve(frames.Count());
    for (const Frame& frame : frames.Frames()) {
        thumbnails.append(frame.ThumbnailPath());
    }
    ui_.scrollViewFrames->Rebuild(std::move(thumbnails));
    ui_.labelFrameCount->setText(QString::number(frames.Count()));
}

void FrameListController::RefreshFrameSelection() {
    const FrameList& frames = project_.State().frames;
    const QSet<FrameId> selected(frames.SelectedIds().cbegin(), frames.SelectedIds().cend());
    std::vector<bool> looks;
    for (const Frame& frame : frames.Frames()) {
        looks.push_back(selected.contains(frame.id));
    }
    ui_.scrollViewFrames->ShowSelection(
        looks, std::exchange(shownTag_, frames.Tag()) != frames.Tag() ? frames.Tag() : -1);
}

void FrameListController::Click(int tag) {
    project_.Follow(WithFrameClicked(project_.State(), tag, session_.CommandIsPressed()));
}

void FrameListController::RemoveSelected() {
    project_.Apply(edits::RemoveSelectedFrames(project_.State()));
}

void FrameListController::RemoveAll() {
    if (project_.State().frames.Count() == 0 ||
        dialogs_.Ask(tr("Are you sure you want to remove all the frames from the list?"))) {
        project_.Apply(edits::RemoveAllFrames(project_.State()));
    }
}

void FrameListController::SelectAll() {
    project_.Follow(WithAllSelected(project_.State()));
}

void FrameListController::Duplicate() {
    ApplyInView(edits::DuplicateFrames(project_.State(), Copies()));
}

void FrameListController::Reverse() {
    project_.Apply(edits::ReverseFrames(project_.State()));
}

void FrameListController::ForthAndBack() {
    ApplyInView(edits::ForthAndBack(project_.State(), Copies()));
}

void FrameListController::MoveSelectedUp() {
    ApplyInView(edits::MoveFramesUp(project_.State()));
}

void FrameListController::MoveSelectedDown() {
    ApplyInView(edits::MoveFramesDown(project_.State()));
}

void FrameListController::Cut() {
    Copy();
    project_.Apply(edits::CutFrames(project_.State()));
}

void FrameListController::Copy() {
    const FrameList& frames = project_.State().frames;
    if (frames.SelectedIds().isEmpty()) {
        return;
    }
    QList<Frame> copied;
    const QList<int> chosen = frames.Chosen(1);
    for (const int index : chosen) {
        copied.append(frames.At(index));
    }
    session_.SetCopiedFrames(std::move(copied));
}

void FrameListController::Paste() {
    QList<Frame> frames = session_.CopiedFrames();
    for (Frame& frame : frames) {
        frame = project_.Store().Duplicate(frame);
    }
    ApplyInView(edits::PasteFrames(project_.State(), frames));
}

/// With the frame last clicked in view.
void FrameListController::ApplyInView(Edit edit) {
    project_.Apply(std::move(edit));
    ui_.scrollViewFrames->Reveal(project_.State().frames.Tag());
}

void FrameListController::Undo() {
    const QList<Frame> before = project_.State().frames.Frames();
    project_.Undo();
    RevealIfChanged(before);
}

void FrameListController::Redo() {
    const QList<Frame> before = project_.State().frames.Frames();
    project_.Redo();
    RevealIfChanged(before);
}

void FrameListController::RevealIfChanged(const QList<Frame>& before) {
    const FrameList& frames = project_.State().frames;
    if (frames.Frames() != before) {
        ui_.scrollViewFrames->Reveal(frames.Tag());
    }
}

std::function<Frame(const Frame&)> FrameListController::Copies() {
    return [this](const Frame& frame) { return project_.Store().Duplicate(frame); };
}

void FrameListController::MoveUp() {
    Edit edit = edits::MoveFrameUp(project_.State());
    const int offset = ui_.scrollViewFrames->Geometry().OffsetAfterMoveUp(edit.after.frames.Tag());
    ShowMoved(std::move(edit), offset);
}

void FrameListController::MoveDown() {
    Edit edit = edits::MoveFrameDown(project_.State());
    const int offset =
        ui_.scrollViewFrames->Geometry().OffsetAfterMoveDown(edit.after.frames.Tag());
    ShowMoved(std::move(edit), offset);
}

void FrameListController::ShowMoved(Edit edit, int offset) {
    if (edit.after.frames == project_.State().frames) {
        return;
    }
    ui_.scrollViewFrames->ScrollTo(offset);
    project_.Apply(std::move(edit));
}

}  // namespace lumirra
