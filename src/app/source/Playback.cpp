#include <QFileInfo>

#include "app/ViewController.h"
#include "ui_MainWindow.h"
#include "views/Icons.h"
#include "views/panel/Film.h"

namespace lumirra {

bool ViewController::IsPlaying() const {
    return film_ != nullptr;
}

void ViewController::OnPlayVideo() {
    if (state_.updating || IsPlaying()) {
        return;
    }
    if (state_.videoPath.isEmpty()) {
        dialogs_.Report(tr("The video could not be loaded."));
        return;
    }
    const auto player = LoadedFilmPlayer();
    if (!player) {
        dialogs_.Report(player.failure().message);
        return;
    }
    FilmReports reports;
    reports.newPicture = [this] { ui_.playerViewVideo->TakePicture(); };
    reports.ended = [this] { StopPlayback(); };
    reports.failed = [this](const QString& reason) {
        const QString name = QFileInfo(state_.videoPath).fileName();
        StopPlayback();
        ui_.imageViewVideo->SetProblem(tr("“%1” could not be played: %2").arg(name, reason));
    };
    film_ = (*player)->Play(state_.videoPath, std::move(reports));
    ui_.playerViewVideo->SetFilm(film_.get());

    ui_.buttonCloseVideo->setEnabled(true);
    ui_.playerViewVideo->show();
    ui_.imageViewVideo->hide();
    for (QWidget* button : {ui_.buttonZoomIn, ui_.buttonZoomOut, ui_.buttonResetZoom}) {
        button->hide();
    }
    ui_.labelImageNumber->hide();
    ui_.buttonCloseVideo->setIcon(DrawnIcon(QStringLiteral("stop")));
    ui_.buttonCloseVideo->setToolTip(tr("Stop playing"));
    ShowPlayButton();
}

void ViewController::StopPlayback() {
    ui_.playerViewVideo->SetFilm(nullptr);
    film_.reset();
    if (HasSource()) {
        RefreshControlStates();
    }
    ShowStillView();
}

void ViewController::ShowStillView() {
    ui_.playerViewVideo->hide();
    ui_.imageViewVideo->show();
    for (QWidget* button : {ui_.buttonZoomIn, ui_.buttonZoomOut, ui_.buttonResetZoom}) {
        button->show();
    }
    ui_.labelImageNumber->setVisible(state_.videoPath.isEmpty() &&
                                     !state_.currentImagePath.isEmpty());
    ui_.buttonCloseVideo->setIcon(DrawnIcon(QStringLiteral("close")));
    ui_.buttonCloseVideo->setToolTip(tr("Close the video or the pictures"));
    ShowPlayButton();
}

void ViewController::ShowPlayButton() {
    const bool video = !state_.videoPath.isEmpty();
    // While it plays the place is kept: the slider beside it must not jump.
    QSizePolicy policy = ui_.buttonPlayVideo->sizePolicy();
    policy.setRetainSizeWhenHidden(video);
    ui_.buttonPlayVideo->setSizePolicy(policy);
    ui_.buttonPlayVideo->setVisible(video && !IsPlaying());
}

}  // namespace lumirra
