#pragma once

#include <QObject>
#include <QTimer>
#include <memory>

#include "jobs/LatestWorker.h"
#include "project/Edit.h"
#include "project/recovery/SessionWriter.h"

namespace lumirra {

class Project;

/// Keeps what is needed to go on with the project beside its frames: soon after each change, in the
/// background, and when the window goes. Main thread.
class SessionKeeper : public QObject {
    Q_OBJECT

  public:
    explicit SessionKeeper(Project& project);

    /// The window goes; `inOrder`: closed by the person. Writes before it returns. True when the
    /// frames are kept: their files stay where they are. The history is forgotten.
    bool Finish(bool inOrder);
    /// No more is written before `Finish`; nothing that was being written holds frames any more.
    void Stop();

  Q_SIGNALS:
    /// All frames there are were written; not said of a project without any.
    void Kept();
    /// Said once until it works again.
    void Failed(const QString& reason);

  private:
    void Follow(ProjectChanges what);
    void Write();
    void Told(const Outcome<Done>& written, bool anyFrames);

    Project& project_;
    QTimer soon_;
    bool failed_ = false;
    bool finished_ = false;
    std::shared_ptr<SessionWriter> writer_;
    std::unique_ptr<LatestWorker> worker_;
};

}  // namespace lumirra
