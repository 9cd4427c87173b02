#include <QAudioDevice>
#include <QAudioOutput>
#include <QFileInfo>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QPointer>
#include <QUrl>
#include <QVideoSink>

#include "app/ViewController.h"
#include "ui_MainWindow.h"
#include "views/Icons.h"

namespace lumirra {

bool ViewController::IsPlaying() const {
    return player_ != nullptr;
}

void ViewController::OnPlayVideo() {
    if (state_.updating || IsPlaying()) {
        return;
    }
    if (state_.videoPath.isEmpty()) {
        dialogs_.Report(tr("The video could not be loaded."));
        return;
    }
    player_ = std::make_unique<QMediaPlayer>();
    // Without a sound device the player's audio output crashes; the film then plays silently.
    if (!QMediaDevices::defaultAudioOutput().isNull()) {
        player_->setAudioOutput(new QAudioOutput(player_.get()));
    }
    player_->setVideoOutput(ui_.playerViewVideo->Sink());
    // Queued, since the handlers end the player that speaks; one that is gone has no say.
    const QPointer<QMediaPlayer> speaker(player_.get());
    connect(
        speaker, &QMediaPlayer::errorOccurred, this,
        [this, speaker](QMediaPlayer::Error, const QString& reason) {
            if (speaker) {
                const QString name = QFileInfo(state_.videoPath).fileName();
                StopPlayback();
                ui_.imageViewVideo->SetProblem(
                    tr("“%1” could not be played: %2").arg(name, reason));
            }
        },
        Qt::QueuedConnection);
    connect(
        speaker, &QMediaPlayer::mediaStatusChanged, this,
        [this, speaker](QMediaPlayer::MediaStatus status) {
            if (speaker && status == QMediaPlayer::EndOfMedia) {
                StopPlayback();
            }
        },
        Qt::QueuedConnection);

    ui_.buttonCloseVideo->setEnabled(true);
    ui_.playerViewVideo->Clear();
    ui_.playerViewVideo->show();
    ui_.imageViewVideo->hide();
    for (QWidget* button : {ui_.buttonZoomIn, ui_.buttonZoomOut, ui_.buttonResetZoom}) {
        button->hide();
    }
    ui_.labelImageNumber->hide();
    ui_.buttonCloseVideo->setIcon(DrawnIcon(QStringLiteral("stop")));
    ui_.buttonCloseVideo->setToolTip(tr("Stop playing"));
    ui_.buttonPlayVideo->hide();
    player_->setSource(QUrl::fromLocalFile(state_.videoPath));
    player_->play();
}

void ViewController::StopPlayback() {
    player_.reset();
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
    ui_.buttonPlayVideo->setVisible(!state_.videoPath.isEmpty());
}

}  // namespace lumirra
