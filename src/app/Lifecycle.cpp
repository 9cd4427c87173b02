#include <QApplication>
#include <QCloseEvent>
#include <utility>

#include "app/FileCommands.h"
#include "app/ViewController.h"
#include "app/controls/ControlWidgets.h"
#include "sources/FrameFiles.h"
#include "sources/VideoEngine.h"
#include "ui_MainWindow.h"
#include "views/panel/Film.h"

namespace lumirra {
void ViewController::InitializeControls() {
    ui_.sliderVideoPosition->setValue(0);
    state_.startPosition = 0.0F;
    state_.endPosition = 1.0F;
    for (QWidget* widget :
         {static_cast<QWidget*>(ui_.playerViewVideo), static_cast<QWidget*>(ui_.buttonPlayVideo),
          static_cast<QWidget*>(ui_.buttonPreviousImage),
          static_cast<QWidget*>(ui_.buttonNextImage),
          static_cast<QWidget*>(ui_.labelImageNumber)}) {
        widget->hide();
    }
    ui_.progressUpdatePreview->Stop();
    ui_.buttonMoveUp->setEnabled(false);
    ui_.buttonMoveDown->setEnabled(false);
    ShowTimesOf(state_.videoPath);
    ResetStartEndMarks();
    ui_.tabViewSettings->setCurrentIndex(0);

    // The aspect ratio is no part of the start values: it stays as chosen.
    ControlValues values = InitialControlValues();
    values.SetIndex(Control::ComboAspectRatio, Values().Index(Control::ComboAspectRatio));
    controls_->Write(values);

    ui_.progressGifPreview->Stop();
    ShowGifPlaying(false);
    ui_.buttonAddFramesAutomatically->setText(tr("Add Frames"));
    ui_.buttonGeneratePreview->setText(tr("Generate Preview"));
    StoreTextFieldsValues();
    ui_.imageViewVideo->SetProblem(QString());
    ui_.imageViewVideo->SetImage(QImage());
    state_.videoPath.clear();
    RefreshSizeEstimate();
}

void ViewController::MarkModified() {
    if (!IsModified()) {
        setWindowTitle(windowTitle() + QLatin1Char('*'));
    }
}

bool ViewController::IsModified() const {
    return windowTitle().endsWith(QLatin1Char('*'));
}

bool ViewController::MayLoseChanges(const QString& question) {
    return !IsModified() || dialogs_.Ask(question);
}

void ViewController::OnFileNew() {
    if (!MayLoseChanges(tr("You have unsaved changes that will be lost. Continue?"))) {
        return;
    }
    job_.Stop();
    if (IsPlaying()) {
        StopPlayback();
    }
    ForgetPreview();
    ForgetCaptures();
    RemoveFrames();
    state_.videoPath.clear();
    state_.currentImagePath.clear();
    state_.listImagePaths.clear();
    state_.currentImageNumber = 0;
    ClearGifPreview();
    RefreshControlStates();
    InitializeControls();
    state_.currentProfilePath.clear();
    setWindowTitle(QStringLiteral("Lumirra"));
}

/// With the first frame on the screen, what opening and playing a first video needs is loaded
/// ahead.
void ViewController::paintEvent(QPaintEvent* event) {
    MainWindow::paintEvent(event);
    if (std::exchange(loadedAhead_, true)) {
        return;
    }
    constexpr int kAfterFirstFrame = 200;  // milliseconds, to leave the first moments to the window
    loadAhead_.setSingleShot(true);
    connect(&loadAhead_, &QTimer::timeout, this, &ViewController::LoadMediaAhead);
    loadAhead_.start(kAfterFirstFrame);
}

void ViewController::LoadMediaAhead() {
    jobs_.start([] {
        // One that does not load says so when it is needed.
        static_cast<void>(LoadedVideoEngine());
        static_cast<void>(LoadedFilmPlayer());
    });
}

void ViewController::closeEvent(QCloseEvent* event) {
    if (!MayLoseChanges(
            tr("You have unsaved changes that will be lost. Are you sure you want to exit "
               "the application?"))) {
        event->ignore();
        return;
    }
    job_.Stop();
    ForgetCaptures();
    SaveLayout();
    CleanTemporaryFiles();
    event->accept();
}

void ViewController::OnAppQuit() {
    close();
}

void ViewController::DeleteFrameFile(const QString& path) {
    RemoveFile(path);
    RemoveFile(ThumbnailPath(path));
}

void ViewController::DeleteTempGif() {
    RemoveFile(PreviewFile());
}

void ViewController::CleanTemporaryFiles() {
    for (const QString& path : state_.frames.Paths()) {
        DeleteFrameFile(path);
    }
    DeleteTempGif();
}

}  // namespace lumirra
