#include "app/ViewController.h"
#include "settings/SettingsRecords.h"
#include "sources/FrameFiles.h"
#include "ui_MainWindow.h"

namespace lumirra {

void ViewController::ConnectFrames() {
    ui_.scrollViewFrames->SetCaption([this](int index) { return FrameCaption(index); });
    connect(ui_.scrollViewFrames, &ScrollViewFrames::UpdateSelectionScrollViewFrames, this,
            &ViewController::UpdateSelectionScrollViewFrames);
    connect(this, &ViewController::Captured, this, &ViewController::StoreCapture,
            Qt::QueuedConnection);
    connect(ui_.buttonAddFrame, &QPushButton::clicked, this, &ViewController::OnAddFrame);
    connect(ui_.buttonAddFramesAutomatically, &QPushButton::clicked, this,
            &ViewController::OnAddFramesAutomatically);
    connect(ui_.buttonRemoveSelectedFrame, &QPushButton::clicked, this,
            &ViewController::OnRemoveSelectedFrame);
    connect(ui_.buttonRemoveAllFrames, &QPushButton::clicked, this,
            &ViewController::OnRemoveAllFrames);
    connect(ui_.buttonMoveUp, &QPushButton::clicked, this, &ViewController::OnMoveUp);
    connect(ui_.buttonMoveDown, &QPushButton::clicked, this, &ViewController::OnMoveDown);
}

/// The frame's number and when the GIF shows it.
QString ViewController::FrameCaption(int index) const {
    const double seconds = index * OutputSettingsOf(Values()).delaySeconds;
    return tr("%1 · %2 s").arg(index + 1).arg(seconds, 0, 'f', 2);
}

void ViewController::RebuildFrameStrip() {
    QStringList thumbnails;
    thumbnails.reserve(state_.frames.Count());
    for (const QString& path : state_.frames.Paths()) {
        thumbnails.append(ThumbnailPath(path));
    }
    ui_.scrollViewFrames->Rebuild(std::move(thumbnails));
    ui_.labelFrameCount->setText(QString::number(state_.frames.Count()));
    RefreshSizeEstimate();
}

void ViewController::RefreshFrameSelection() {
    state_.frames.Refresh(state_.commandIsPressed);
    ShowFrameSelection();
}

void ViewController::UpdateSelectionScrollViewFrames(int tag) {
    if (tag >= 0 && tag < state_.frames.Count()) {
        state_.frames.Click(tag, state_.commandIsPressed);
        ShowFrameSelection();
    }
}

/// After the selection followed the frame last clicked.
void ViewController::ShowFrameSelection() {
    const FrameList& frames = state_.frames;
    const int tag = frames.Tag();
    if (!state_.commandIsPressed) {
        ui_.scrollViewFrames->ShowOnlySelected(tag);
    } else if (tag >= 0 && tag < frames.Count()) {
        ui_.scrollViewFrames->ShowSelected(tag, frames.IsSelected(frames.Paths().at(tag)));
    }
    EnableMoveButtons();
}

void ViewController::EnableMoveButtons() {
    const bool can = state_.frames.CanMove() && RunningJob() == BackgroundJob::Kind::None;
    ui_.buttonMoveUp->setEnabled(can);
    ui_.buttonMoveDown->setEnabled(can);
}

void ViewController::OnRemoveSelectedFrame() {
    for (const QString& path : state_.frames.RemoveSelected()) {
        DeleteFrameFile(path);
    }
    RebuildFrameStrip();
    RefreshFrameSelection();
    RebuildFrameStrip();
}

void ViewController::OnRemoveAllFrames() {
    if (state_.frames.Count() > 0 &&
        !dialogs_.Ask(tr("Are you sure you want to remove all the frames from the list?"))) {
        return;
    }
    RemoveFrames();
}

void ViewController::RemoveFrames() {
    for (const QString& path : state_.frames.RemoveAll()) {
        DeleteFrameFile(path);
    }
    RebuildFrameStrip();
    RefreshFrameSelection();
}

void ViewController::OnMoveUp() {
    if (state_.frames.MoveUp()) {
        ShowMoved(ui_.scrollViewFrames->Geometry().OffsetAfterMoveUp(state_.frames.Tag()));
    }
}

void ViewController::OnMoveDown() {
    if (state_.frames.MoveDown()) {
        ShowMoved(ui_.scrollViewFrames->Geometry().OffsetAfterMoveDown(state_.frames.Tag()));
    }
}

void ViewController::ShowMoved(int offset) {
    ui_.scrollViewFrames->ScrollTo(offset);
    RebuildFrameStrip();
    RefreshFrameSelection();
}

}  // namespace lumirra
