#include "app/frames/ShownFrameController.h"

#include <new>
#include <utility>

#include "app/session/Session.h"
#include "output/frames/FrameReader.h"
#include "project/Project.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

QImage PictureOf(const QString& path) {
    try {
        const Outcome<QImage> picture = ReadFrame(path);
        return picture ? *picture : QImage();
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace

ShownFrameController::ShownFrameController(const Project& project, const Session& session,
                                           Ui::MainWindow& ui)
    : project_(project),
      session_(session),
      ui_(ui),
      escape_(QKeySequence(Qt::Key_Escape), ui.imageViewFrame->window()) {
    Hide();
    connect(&escape_, &QShortcut::activated, this, &ShownFrameController::Hide);
    connect(ui_.imageViewFrame, &FrameView::Dismissed, this, &ShownFrameController::Hide);
    connect(&project, &Project::Changed, this, &ShownFrameController::Follow);
    connect(&session, &Session::Changed, this, [this] {
        if (session_.IsPlaying()) {
            Hide();
        }
    });
}

/// Of the one selected frame; -1 when there is none or more.
int ShownFrameController::SelectedIndex() const {
    const FrameList& frames = project_.State().frames;
    return frames.SelectedIds().size() == 1 ? frames.Chosen(1).value(0, -1) : -1;
}

void ShownFrameController::ShowOrHide() {
    if (shown_ != 0) {
        Hide();
    } else if (SelectedIndex() >= 0) {
        Show(SelectedIndex());
    }
}

void ShownFrameController::Show(int index) {
    const Frame& frame = project_.State().frames.At(index);
    ui_.imageViewFrame->SetHint(tr("Frame %1, as it is stored · Escape goes back").arg(index + 1));
    if (std::exchange(shown_, frame.id) == frame.id) {
        return;
    }
    escape_.setEnabled(true);
    reader_.Submit([this, path = frame.Path()](const std::stop_token&) {
        return [this, picture = PictureOf(path)] {
            ui_.imageViewFrame->SetProblem(
                picture.isNull() ? tr("The frame's picture can no longer be read.") : QString());
            ui_.imageViewFrame->SetImage(picture);
            ui_.imageViewFrame->show();
        };
    });
}

void ShownFrameController::Hide() {
    shown_ = 0;
    escape_.setEnabled(false);
    reader_.Forget();
    ui_.imageViewFrame->hide();
    ui_.imageViewFrame->SetImage(QImage());
}

void ShownFrameController::Follow(ProjectChanges what) {
    if (shown_ == 0) {
        return;
    }
    const bool another = static_cast<bool>(
        what & (ProjectChange::Source | ProjectChange::Position | ProjectChange::Picture));
    if (another || SelectedIndex() < 0) {
        Hide();
    } else if (what & (ProjectChange::Frames | ProjectChange::Selection)) {
        Show(SelectedIndex());
    }
}

}  // namespace lumirra
