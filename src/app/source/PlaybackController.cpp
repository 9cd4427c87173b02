#include "app/source/PlaybackController.h"

#include <QFileInfo>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/session/Session.h"
#include "project/Project.h"
#include "sources/VideoTools.h"
#include "ui_MainWindow.h"
#include "views/Icons.h"
#include "views/panel/Film.h"

namespace lumirra {

PlaybackController::PlaybackController(const Project& project, Session& session, Dialogs& dialogs,
                                       Ui::MainWindow& ui)
    : project_(project), session_(session), dialogs_(dialogs), ui_(ui) {}

PlaybackController::~PlaybackController() {
    ui_.playerViewVideo->SetFilm(nullptr);
}

void PlaybackController::Play() {
    if (session_.IsUpdating() || IsPlaying()) {
        return;
    }
    const QString path = project_.State().source.videoPath;
    if (path.isEmpty()) {
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
    reports.ended = [this] { Stop(); };
    reports.failed = [this, path](const QString& reason) {
        Stop();
        ui_.imageViewVideo->SetProblem(
            tr("“%1” could not be played: %2").arg(QFileInfo(path).fileName(), reason));
    };
    film_ = (*player)->Play(path, VideoTools::Display(path), std::move(reports));
    ui_.playerViewVideo->SetFilm(film_.get());
    session_.SetPlaying(true);
    ShowCloseButton();
}

void PlaybackController::Stop() {
    if (!IsPlaying()) {
        return;
    }
    ui_.playerViewVideo->SetFilm(nullptr);
    film_.reset();
    session_.SetPlaying(false);
    ShowCloseButton();
}

void PlaybackController::ShowCloseButton() {
    const bool playing = IsPlaying();
    ui_.buttonCloseVideo->setIcon(
        DrawnIcon(playing ? QStringLiteral("stop") : QStringLiteral("close")));
    ui_.buttonCloseVideo->setToolTip(playing ? tr("Stop playing")
                                             : tr("Close the video or the pictures"));
}

}  // namespace lumirra
