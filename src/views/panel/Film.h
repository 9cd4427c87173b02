#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <functional>
#include <memory>

#include "imaging/DisplayTransform.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// What a playing film has to say, from the event loop. Each may end the film.
struct FilmReports {
    std::function<void()> newPicture;
    std::function<void()> ended;
    std::function<void(const QString& reason)> failed;
};

/// A film that plays from when it is made until it is destroyed, with sound where there is a device
/// for it. Main thread.
class Film {
  public:
    virtual ~Film() = default;
    /// Of the newest picture as it is shown; empty before the first.
    virtual QSize PictureSize() const = 0;
    /// The newest picture as it is shown, at `size` (no larger than its own), into `image` (made
    /// anew unless it has that size). False when there is none that can be drawn.
    virtual bool Draw(const QSize& size, QImage& image) const = 0;
};

/// The toolkit's player. It is a library of its own, loaded when first asked for: it brings some
/// twenty others.
class FilmPlayer {
  public:
    virtual ~FilmPlayer() = default;
    /// `display` is how the file's pictures are to be shown.
    virtual std::unique_ptr<Film> Play(const QString& path, const DisplayTransform& display,
                                       FilmReports reports) const = 0;
};

/// The player, which lives as long as the program. The first call loads it, others that come
/// meanwhile wait; any thread. Fails, then and ever after, when its library does not load.
Outcome<const FilmPlayer*> LoadedFilmPlayer();

}  // namespace lumirra
