#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <functional>
#include <memory>

#include "imaging/DisplayTransform.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// Callbacks of a playing film, called from the event loop. Each may destroy the film.
struct FilmReports {
    std::function<void()> newPicture;
    std::function<void()> ended;
    std::function<void(const QString& reason)> failed;
};

/// Plays from construction to destruction, with sound where the system has an output device. Main
/// thread.
class Film {
  public:
    virtual ~Film() = default;
    /// Size of the newest picture as it is shown; empty before the first.
    virtual QSize PictureSize() const = 0;
    /// Draws the newest picture as it is shown into `image`, scaled to `size` (no larger than its
    /// own); `image` is allocated unless it has that size. False without a picture to draw.
    virtual bool Draw(const QSize& size, QImage& image) const = 0;
};

/// The toolkit's player: a module loaded on first use, since it links about twenty
/// libraries.
class FilmPlayer {
  public:
    virtual ~FilmPlayer() = default;
    /// `display` is how the file's pictures are to be shown.
    virtual std::unique_ptr<Film> Play(const QString& path, const DisplayTransform& display,
                                       FilmReports reports) const = 0;
};

/// The player, alive until the program ends. The first call loads the module and concurrent calls
/// wait for it; any thread. A failure to load is permanent: every later call fails too.
Outcome<const FilmPlayer*> LoadedFilmPlayer();

}  // namespace lumirra
