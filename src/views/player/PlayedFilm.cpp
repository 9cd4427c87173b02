#include "views/player/PlayedFilm.h"

#include <fcntl.h>

#include <QAudioDevice>
#include <QAudioOutput>
#include <QMediaDevices>
#include <QUrl>

#include "imaging/files/FileName.h"
#include "views/player/VideoFramePixels.h"

namespace lumirra {

PlayedFilm::PlayedFilm(const QString& path, const DisplayTransform& display, FilmReports reports)
    : display_(display), reports_(std::move(reports)) {
    // Without a sound device the player's audio output crashes; the film then plays silently.
    if (!QMediaDevices::defaultAudioOutput().isNull()) {
        player_.setAudioOutput(new QAudioOutput(&player_));
    }
    player_.setVideoOutput(&sink_);
    ConnectPlayer();
    player_.setSource(AddressFor(path));
    player_.play();
}

/// The player takes names that are UTF-8 alone; the others go to it as files that we hold open.
QUrl PlayedFilm::AddressFor(const QString& path) {
    if (ReadableName(path) == path) {
        return QUrl::fromLocalFile(path);
    }
    held_ = Descriptor(::open(FileBytes(path).constData(), O_RDONLY | O_CLOEXEC));
    return QUrl::fromLocalFile(QStringLiteral("/proc/self/fd/%1").arg(held_.Get()));
}

void PlayedFilm::ConnectPlayer() {
    QObject::connect(&sink_, &QVideoSink::videoFrameChanged, &here_,
                     [this](const QVideoFrame& frame) { TakeFrame(frame); });
    // Queued, since whoever is told may end the player that speaks.
    QObject::connect(
        &player_, &QMediaPlayer::errorOccurred, &here_,
        [this](QMediaPlayer::Error, const QString& reason) { TellProblem(reason); },
        Qt::QueuedConnection);
    QObject::connect(
        &player_, &QMediaPlayer::mediaStatusChanged, &here_,
        [this](QMediaPlayer::MediaStatus status) {
            if (status == QMediaPlayer::EndOfMedia) {
                TellEnd();
            }
        },
        Qt::QueuedConnection);
}

void PlayedFilm::TakeFrame(const QVideoFrame& frame) {
    if (frame.isValid()) {
        frame_ = frame;
        reports_.newPicture();
    }
}

// The function called may destroy this film, and so must not be the film's own.
void PlayedFilm::TellProblem(const QString& reason) {
    const auto tell = reports_.failed;
    tell(reason);
}

void PlayedFilm::TellEnd() {
    const auto tell = reports_.ended;
    tell();
}

QSize PlayedFilm::PictureSize() const {
    return frame_.isValid() ? display_.ShownSize(frame_.size()) : QSize();
}

bool PlayedFilm::Draw(const QSize& size, QImage& image) const {
    return frame_.isValid() && FrameToImage(frame_, display_, size, image);
}

}  // namespace lumirra
