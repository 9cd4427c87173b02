#include <QThread>

#include "app/ViewController.h"
#include "app/controls/ControlWidgets.h"
#include "settings/SettingsRecords.h"
#include "ui_MainWindow.h"

namespace lumirra {

void ViewController::UpdateVideoPreview() {
    if (state_.updating) {
        state_.selectionChanged = true;
        return;
    }
    dragWaiting_ = false;
    if (IsPlaying()) {
        StopPlayback();
    }
    if (state_.videoPath.isEmpty() && state_.listImagePaths.isEmpty()) {
        return;
    }
    StartPreview();
}

void ViewController::RequestPreview(bool dragging) {
    if (dragging && state_.updating) {
        dragWaiting_ = true;
        return;
    }
    UpdateVideoPreview();
}

void ViewController::StartPreview() {
    state_.updating = true;
    ui_.progressUpdatePreview->Start();
    PreviewRequest request{state_.videoPath, state_.currentImagePath,
                           EffectSettingsOf(Values(), ui_.sliderVideoPosition->value())};
    jobs_.start([this, source = previewSource_, request = std::move(request),
                 generation = previewGeneration_] {
        PreviewResult result = source->Render(request, QThread::idealThreadCount());
        QMetaObject::invokeMethod(
            this,
            [this, result = std::move(result), generation] { FinishPreview(result, generation); },
            Qt::QueuedConnection);
    });
}

void ViewController::FinishPreview(const PreviewResult& result, quint64 generation) {
    state_.updating = false;
    const bool anew = std::exchange(state_.selectionChanged, false);
    if (anew || generation != previewGeneration_) {
        ui_.progressUpdatePreview->Stop();
        if (anew) {
            UpdateVideoPreview();
        }
        return;
    }
    ui_.progressUpdatePreview->Stop();
    sourceDuration_ = result.durationSeconds;
    sourceFrameRate_ = result.framesPerSecond;
    ui_.imageViewVideo->SetProblem(result.problem ? result.problem->message : QString());
    ui_.imageViewVideo->SetImage(result.image);
    ui_.labelVideoPositionTime->setText(result.timeLabel);
    UpdateCropResizeGeometry();
    ShowExtractionPlan();
    if (dragWaiting_) {
        UpdateVideoPreview();
    }
}

/// The source changes: a picture of the old one that is still on its way will not be shown.
void ViewController::ForgetPreview() {
    ++previewGeneration_;
    sourceDuration_ = 0;
    dragWaiting_ = false;
    state_.selectionChanged = false;
}

}  // namespace lumirra
