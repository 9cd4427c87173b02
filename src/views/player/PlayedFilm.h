#pragma once

#include <QMediaPlayer>
#include <QVideoFrame>
#include <QVideoSink>

#include "views/panel/Film.h"

namespace lumirra {

/// A film in the toolkit's player.
class PlayedFilm final : public Film {
  public:
    PlayedFilm(const QString& path, FilmReports reports);

    QSize PictureSize() const override;
    bool Draw(const QSize& size, QImage& image) const override;

  private:
    void ConnectPlayer();
    void TakeFrame(const QVideoFrame& frame);
    void TellProblem(const QString& reason);
    void TellEnd();

    FilmReports reports_;
    QVideoFrame frame_;
    QVideoSink sink_;
    QMediaPlayer player_;  // after what it draws into: it goes first
    QObject here_;         ///< what waits for the event loop goes with it
};

}  // namespace lumirra
