#pragma once

#include <QList>
#include <QObject>

#include "jobs/BackgroundJob.h"
#include "project/Frame.h"

namespace lumirra {

/// What goes on in the window beside the project: the one long job, playing, rendering. Main
/// thread.
class Session : public QObject {
    Q_OBJECT

  public:
    Session();

    /// The one long job that may run.
    BackgroundJob& Job() { return job_; }
    BackgroundJob::Kind RunningJob() const { return job_.Running(); }

    /// No control may change anything: a job runs, or is about to.
    bool IsLocked() const { return locked_ || RunningJob() != BackgroundJob::Kind::None; }
    void SetLocked(bool locked);

    bool IsPlaying() const { return playing_; }
    void SetPlaying(bool playing);

    /// A GIF was made and is shown.
    bool HasGif() const { return hasGif_; }
    void SetHasGif(bool hasGif);
    /// It is known not to be repeated for ever.
    bool GifEnds() const { return gifEnds_; }
    void SetGifEnds(bool ends);

    /// A smaller width of the GIF is on offer.
    bool OffersWidth() const { return offersWidth_; }
    void SetOffersWidth(bool offers);

    /// A render of the picture shown runs (`updating`).
    bool IsUpdating() const { return updating_; }
    void SetUpdating(bool updating) { updating_ = updating; }

    /// Ctrl alone is held (`commandIsPressed`).
    bool CommandIsPressed() const { return commandIsPressed_; }
    void SetCommandIsPressed(bool pressed) { commandIsPressed_ = pressed; }

    /// Frames that were cut or copied, with their files.
    const QList<Frame>& CopiedFrames() const { return copiedFrames_; }
    void SetCopiedFrames(QList<Frame> frames);

    /// There is a last session to go on with.
    bool CanReopen() const { return canReopen_; }
    void SetCanReopen(bool can);

  Q_SIGNALS:
    /// Locked, playing, what is known of the GIF and on offer for it, the frames copied, or what
    /// can be reopened.
    void Changed();

  private:
    BackgroundJob job_;
    QList<Frame> copiedFrames_;
    bool locked_ = false;
    bool playing_ = false;
    bool hasGif_ = false;
    bool gifEnds_ = false;
    bool offersWidth_ = false;
    bool updating_ = false;
    bool commandIsPressed_ = false;
    bool canReopen_ = false;
};

}  // namespace lumirra
