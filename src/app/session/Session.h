#pragma once

#include <QObject>

#include "jobs/BackgroundJob.h"

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

    /// A render of the picture shown runs (`updating`).
    bool IsUpdating() const { return updating_; }
    void SetUpdating(bool updating) { updating_ = updating; }

    /// Ctrl alone is held (`commandIsPressed`).
    bool CommandIsPressed() const { return commandIsPressed_; }
    void SetCommandIsPressed(bool pressed) { commandIsPressed_ = pressed; }

  Q_SIGNALS:
    /// Locked or playing.
    void Changed();

  private:
    BackgroundJob job_;
    bool locked_ = false;
    bool playing_ = false;
    bool updating_ = false;
    bool commandIsPressed_ = false;
};

}  // namespace lumirra
