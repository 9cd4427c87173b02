#pragma once

#include <QMediaPlayer>
#include <QVideoFrame>
#include <QVideoSink>

#include "imaging/files/Descriptor.h"
#include "views/panel/Film.h"

namespace lumirra {

/// A film in the toolkit's player.
class PlayedFilm final : public Film {
  public:
    PlayedFilm(const QString& path, const DisplayTransform& display, FilmReports reports);

    QSize PictureSize() const override;
    bool Draw(const QSize& size, QImage& image) const override;

  private:
    QUrl AddressFor(const QString& path);
    void ConnectPlayer();
    void TakeFrame(const QVideoFrame& frame);
    void TellProblem(const QString& reason);
    void TellEnd();

    DisplayTransform display_;
    FilmReports reports_;
    Descriptor held_;
    QVideoFrame frame_;
    QVideoSink sink_;
    QMediaPlayer player_;  // after what it draws into: it goes first
    QObject here_;         ///< what waits for the event loop goes with it
};

}  // namespace lumirra
