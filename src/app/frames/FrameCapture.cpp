#include "app/ViewController.h"
#include "app/controls/ControlWidgets.h"
#include "imaging/CropScale.h"
#include "settings/SettingsRecords.h"
#include "sources/FrameFiles.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

constexpr auto kCouldNotAdd = QT_TRANSLATE_NOOP("lumirra::ViewController", "Could not add frame.");

}  // namespace

void ViewController::OnAddFrame() {
    if (IsPlaying()) {
        StopPlayback();
    }
    if (state_.updating) {
        return;  // the picture shown is about to be replaced
    }
    const QImage shown = ui_.imageViewVideo->Image();
    if (shown.isNull()) {
        dialogs_.Report(tr("Please select a video first."));
        return;
    }
    const Outcome<QString> path = NextFramePath(temporaryFolder_);
    if (!path) {
        dialogs_.Report(tr(kCouldNotAdd));
        return;
    }
    capturesInFlight_.append(*path);
    jobs_.start([this, shown, settings = CaptureSettingsOf(Values()), path = *path] {
        Q_EMIT Captured(ImageTools::CropAndResizeCapturedFrame(shown, settings), path);
    });
}

void ViewController::StoreCapture(const QImage& frame, const QString& path) {
    if (!capturesInFlight_.removeOne(path)) {
        return;  // it belonged to a project that is gone
    }
    if (!StoreFrame(frame, path)) {
        dialogs_.Report(tr(kCouldNotAdd));
        return;
    }
    state_.frames.Append(path);
    RebuildFrameStrip();
    RefreshFrameSelection();
}

/// Captures that have not come back yet will not become frames; their places are freed.
void ViewController::ForgetCaptures() {
    for (const QString& path : std::as_const(capturesInFlight_)) {
        RemoveFrame(path);
    }
    capturesInFlight_.clear();
}

}  // namespace lumirra
