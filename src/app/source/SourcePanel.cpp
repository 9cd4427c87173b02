#include <QAbstractButton>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>
#include <algorithm>
#include <cmath>

#include "app/ViewController.h"
#include "app/controls/ControlWidgets.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

constexpr auto kMarkerOrder = QT_TRANSLATE_NOOP(
    "lumirra::ViewController", "The Start Time marker cannot be placed after the End Time marker.");
constexpr auto kNoVideoYet =
    QT_TRANSLATE_NOOP("lumirra::ViewController", "Please select a video first.");

/// The settings that matter to a video alone.
constexpr Control kExtractionControls[] = {Control::RadioFixedNumberOfFrames,
                                           Control::TextFieldFixedNumberOfFrames,
                                           Control::StepperFixedNumberOfFrames,
                                           Control::RadioFixedIntervalBetweenFrames,
                                           Control::TextFieldFixedIntervalBetweenFrames,
                                           Control::StepperFixedIntervalBetweenFrames,
                                           Control::ComboPlayMode};

}  // namespace

bool ViewController::HasSource() const {
    return !state_.videoPath.isEmpty() || !state_.currentImagePath.isEmpty();
}

bool ViewController::ShowsPicture() const {
    return !ui_.imageViewVideo->Image().isNull();
}

void ViewController::ResetStartEndMarks() {
    ui_.sliderVideoPosition->SetStartMark(0);
    state_.startPosition = ui_.sliderVideoPosition->value();
    ui_.sliderVideoPosition->SetEndMark(1);
    state_.endPosition = 1.0F;
    ShowExtractionPlan();
}

void ViewController::RefreshControlStates() {
    const bool video = !state_.videoPath.isEmpty();
    const bool images = !video && !state_.currentImagePath.isEmpty();

    for (const ControlRow& row : ControlTable()) {
        controls_->WidgetOf(row.control).setEnabled(true);
    }
    for (const Control control : kExtractionControls) {
        controls_->WidgetOf(control).setEnabled(video);
    }
    for (QWidget* widget : {static_cast<QWidget*>(ui_.sliderVideoPosition),
                            static_cast<QWidget*>(ui_.buttonMarkAsStartTime),
                            static_cast<QWidget*>(ui_.buttonMarkAsEndTime)}) {
        widget->setEnabled(video);
    }
    for (QWidget* widget : {static_cast<QWidget*>(ui_.buttonPreviousImage),
                            static_cast<QWidget*>(ui_.buttonNextImage),
                            static_cast<QWidget*>(ui_.labelImageNumber)}) {
        widget->setVisible(images);
    }
    if (images) {
        ui_.labelImageNumber->setText(QStringLiteral("%1/%2")
                                          .arg(state_.currentImageNumber + 1)
                                          .arg(state_.listImagePaths.size()));
    }
    ShowPlayButton();
    ui_.buttonAddFramesAutomatically->setEnabled(video || state_.listImagePaths.size() >= 2);

    for (QAbstractButton* button : {ui_.buttonAddFrame,        ui_.buttonSelectVideo,
                                    ui_.buttonSelectImage,     ui_.buttonRemoveSelectedFrame,
                                    ui_.buttonRemoveAllFrames, ui_.buttonZoomIn,
                                    ui_.buttonZoomOut,         ui_.buttonResetZoom,
                                    ui_.buttonCloseVideo,      ui_.buttonPlayVideo,
                                    ui_.buttonPreviousImage,   ui_.buttonNextImage,
                                    ui_.buttonGeneratePreview, ui_.buttonPlayStopPreview,
                                    ui_.buttonSaveGif,         ui_.buttonAdjustSettingsReset,
                                    ui_.buttonCartoonReset,    ui_.buttonSketchReset,
                                    ui_.buttonVignetteReset,   ui_.buttonTextReset,
                                    ui_.buttonCropResizeReset, ui_.buttonOutputReset}) {
        button->setEnabled(true);
    }
    EnableMoveButtons();
    ShowOutputPreferences();
    RefreshSizeEstimate();
    ShowExtractionPlan();
    if (RunningJob() != BackgroundJob::Kind::None) {
        DisableAllControls();
        return;
    }
    AcceptSources(true);
    ReturnFocus();
}

/// With the position at the start.
void ViewController::ShowTimesOf(const QString& path) {
    const QString start = VideoTools::TimeLabelAtPosition(path, 0.0);
    ui_.labelStartTime->setText(start);
    ui_.labelVideoPositionTime->setText(start);
    ui_.labelEndTime->setText(VideoTools::TimeLabelAtPosition(path, 1.0));
}

void ViewController::OnSelectVideo() {
    if (IsPlaying()) {
        StopPlayback();
    }
    const std::optional<QStringList> chosen = dialogs_.OpenFiles(
        {tr("Open Video"), tr("Videos"), ui_.imageViewVideo->acceptedVideoTypes, false});
    if (!chosen) {
        return;
    }
    if (chosen->isEmpty()) {
        dialogs_.Report(tr("The video could not be loaded."));
        return;
    }
    LoadVideo(chosen->first());
}

void ViewController::VideoDragPerformed(const QString& path) {
    if (path.isEmpty()) {
        dialogs_.Report(tr("The video could not be loaded."));
        return;
    }
    LoadVideo(path);
}

void ViewController::LoadVideo(const QString& path) {
    ForgetPreview();
    state_.videoPath = path;
    ui_.sliderVideoPosition->setValue(0);
    ShowTimesOf(path);
    state_.listImagePaths.clear();
    RefreshControlStates();
    UpdateVideoPreview();
    ResetStartEndMarks();
}

void ViewController::OnSelectImage() {
    if (IsPlaying()) {
        StopPlayback();
    }
    const std::optional<QStringList> chosen = dialogs_.OpenFiles(
        {tr("Open Pictures"), tr("Pictures"), ui_.imageViewVideo->acceptedImageTypes, true});
    if (!chosen) {
        return;
    }
    if (chosen->isEmpty()) {
        dialogs_.Report(tr("The image could not be loaded."));
        return;
    }
    LoadImages(*chosen);
}

void ViewController::ImageDragPerformed(const QStringList& paths) {
    if (paths.isEmpty()) {
        dialogs_.Report(tr("The image could not be loaded."));
        return;
    }
    LoadImages(paths);
}

void ViewController::OpenFiles(const QStringList& paths) {
    QList<QUrl> addresses;
    for (const QString& path : paths) {
        addresses.append(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    }
    QMimeData files;
    files.setUrls(addresses);
    if (!paths.isEmpty() && !ui_.imageViewVideo->PerformDragOperation(files)) {
        dialogs_.Report(tr("“%1” is neither a video nor a picture that can be opened.")
                            .arg(QFileInfo(paths.first()).fileName()));
    }
}

void ViewController::LoadImages(const QStringList& added) {
    for (const QString& path : added) {
        if (!path.isEmpty() && !state_.listImagePaths.contains(path)) {
            state_.listImagePaths.append(path);
        }
    }
    if (state_.listImagePaths.isEmpty()) {
        return;
    }
    if (!state_.currentImagePath.isEmpty()) {
        RefreshControlStates();
        const auto first = state_.listImagePaths.size() - added.size();
        ShowImageNumber(static_cast<int>(std::max<qsizetype>(first, 0)));
        return;
    }
    ForgetPreview();
    ui_.sliderVideoPosition->setValue(0);
    ShowTimesOf(state_.videoPath);
    state_.videoPath.clear();
    state_.currentImageNumber = 0;
    state_.currentImagePath = state_.listImagePaths.first();
    RefreshControlStates();
    UpdateVideoPreview();
    ResetStartEndMarks();
}

void ViewController::ShowImageNumber(int number) {
    state_.currentImageNumber = number;
    state_.currentImagePath = state_.listImagePaths[number];
    RefreshControlStates();
    UpdateVideoPreview();
}

void ViewController::OnPreviousImage() {
    if (state_.currentImageNumber > 0) {
        ShowImageNumber(state_.currentImageNumber - 1);
    }
}

void ViewController::OnNextImage() {
    if (state_.currentImageNumber < state_.listImagePaths.size() - 1) {
        ShowImageNumber(state_.currentImageNumber + 1);
    }
}

void ViewController::OnStopVideo() {
    if (HasSource()) {
        RefreshControlStates();
    }
    if (IsPlaying()) {
        StopPlayback();
        return;
    }
    if (!ShowsPicture() && !HasSource()) {
        return;
    }
    ForgetPreview();
    ui_.sliderVideoPosition->setValue(0);
    ShowTimesOf(state_.videoPath);
    state_.videoPath.clear();
    state_.currentImagePath.clear();
    state_.listImagePaths.clear();
    state_.currentImageNumber = 0;
    RefreshControlStates();
    ui_.labelImageNumber->clear();
    ui_.imageViewVideo->SetProblem(QString());
    ui_.imageViewVideo->SetImage(QImage());
    ResetStartEndMarks();
}

void ViewController::OnVideoPositionChanged() {
    RequestPreview(ui_.sliderVideoPosition->IsDragged());
}

void ViewController::OnMarkAsStartTime() {
    if (IsPlaying()) {
        StopPlayback();
    }
    const float position = ui_.sliderVideoPosition->value();
    if (!ShowsPicture()) {
        dialogs_.Report(tr(kNoVideoYet));
    } else if (state_.endPosition <= position) {
        dialogs_.Report(tr(kMarkerOrder));
    } else {
        ui_.sliderVideoPosition->SetStartMark(position);
        state_.startPosition = position;
        ui_.labelStartTime->setText(ui_.labelVideoPositionTime->text());
        ShowExtractionPlan();
    }
}

void ViewController::OnMarkAsEndTime() {
    if (IsPlaying()) {
        StopPlayback();
    }
    const float position = ui_.sliderVideoPosition->value();
    if (!ShowsPicture()) {
        dialogs_.Report(tr(kNoVideoYet));
    } else if (position <= state_.startPosition) {
        dialogs_.Report(tr(kMarkerOrder));
    } else {
        ui_.sliderVideoPosition->SetEndMark(position);
        state_.endPosition = position;
        ui_.labelEndTime->setText(ui_.labelVideoPositionTime->text());
        ShowExtractionPlan();
    }
}

/// To the time at which the next or the previous picture is shown.
void ViewController::StepFrame(int frames) {
    const double pictures = sourceDuration_ * sourceFrameRate_;
    if (state_.videoPath.isEmpty() || !(pictures >= 1)) {
        return;
    }
    const double shown =
        std::floor(static_cast<double>(ui_.sliderVideoPosition->value()) * pictures + 1e-3);
    ui_.sliderVideoPosition->EditValue((shown + frames) / pictures);
}

void ViewController::OnZoomIn() {
    ui_.customViewVideo->ZoomIn();
}
void ViewController::OnZoomOut() {
    ui_.customViewVideo->ZoomOut();
}
void ViewController::OnResetZoom() {
    ui_.customViewVideo->ResetZoom();
}

}  // namespace lumirra
