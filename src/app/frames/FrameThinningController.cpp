#include "app/frames/FrameThinningController.h"

#include <QWidget>
#include <algorithm>
#include <new>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/dialogs/NearDuplicatesDialog.h"
#include "output/frames/FrameReader.h"
#include "project/FrameStore.h"
#include "project/Project.h"
#include "project/edits/FrameEdits.h"

namespace lumirra {
namespace {

constexpr int kProgressMs = 50;

/// Without entries when the file cannot be read.
PictureSignature LookOf(const Frame& frame) {
    try {
        const Outcome<QImage> picture = ReadFrame(frame.Path());
        return picture ? SignatureOf(*picture) : PictureSignature();
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace

FrameThinningController::FrameThinningController(Project& project, Dialogs& dialogs,
                                                 QWidget& window)
    : project_(project), dialogs_(dialogs), window_(window) {
    progress_.setInterval(kProgressMs);
    connect(&progress_, &QTimer::timeout, this, &FrameThinningController::ShowReading);
    connect(&project, &Project::Changed, this, [this](ProjectChanges what) {
        if (what & (ProjectChange::Frames | ProjectChange::Selection)) {
            ShowResult();
        }
    });
}

void FrameThinningController::KeepEveryNth() {
    const auto chosen = static_cast<int>(project_.State().frames.Chosen(2).size());
    const std::optional<double> step = dialogs_.AskNumber(
        {.title = tr("Keep Every n-th Frame"),
         .question = tr("Of %1 frames the first stays, and after it every:").arg(chosen),
         .value = 2,
         .minimum = 2,
         .maximum = static_cast<double>(std::max(chosen, 2))});
    if (step) {
        project_.Apply(edits::KeepEveryNth(project_.State(), qRound(*step)));
    }
}

void FrameThinningController::RemoveNearDuplicates() {
    dialog_ = new NearDuplicatesDialog(&window_);
    dialog_->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog_, &NearDuplicatesDialog::ThresholdChanged, this,
            &FrameThinningController::ShowResult);
    connect(dialog_, &QDialog::accepted, this, [this] { project_.Apply(EditOfDialog()); });
    connect(dialog_, &QDialog::finished, this, [this] {
        progress_.stop();
        worker_.Forget();
        looks_.clear();
        isRead_ = false;
    });
    Read();
    dialog_->open();
}

FrameThinningController::Looks FrameThinningController::LooksOf(const QList<Frame>& frames,
                                                                Reading& reading,
                                                                const std::stop_token& stop) {
    Looks looks;
    QHash<const FrameFile*, PictureSignature> known;  // copies of a frame share their file
    for (const Frame& frame : frames) {
        if (stop.stop_requested()) {
            return {};
        }
        if (!known.contains(frame.file.get())) {
            known.insert(frame.file.get(), LookOf(frame));
        }
        looks.insert(frame.id, known.value(frame.file.get()));
        ++reading.read;
    }
    return looks;
}

void FrameThinningController::Read() {
    const FrameList& list = project_.State().frames;
    QList<Frame> frames;
    const QList<int> chosen = list.Chosen(2);
    for (const int index : chosen) {
        frames.append(list.At(index));
    }
    isRead_ = false;
    reading_ = std::make_shared<Reading>();
    reading_->total = static_cast<int>(frames.size());
    ShowReading();
    progress_.start();
    worker_.Submit([this, frames, reading = reading_](const std::stop_token& stop) {
        return [this, looks = LooksOf(frames, *reading, stop)] {
            looks_ = looks;
            isRead_ = true;
            progress_.stop();
            ShowResult();
        };
    });
}

void FrameThinningController::ShowReading() {
    if (dialog_) {
        dialog_->ShowProgress(reading_->read, reading_->total);
    }
}

void FrameThinningController::ShowResult() {
    if (dialog_ && isRead_) {
        dialog_->ShowResult(project_.State().frames.Count() - EditOfDialog().after.frames.Count(),
                            static_cast<int>(project_.State().frames.Chosen(2).size()));
    }
}

Edit FrameThinningController::EditOfDialog() const {
    return edits::RemoveNearDuplicates(project_.State(), looks_, dialog_->Threshold());
}

}  // namespace lumirra
