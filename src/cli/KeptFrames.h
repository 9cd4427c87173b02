#pragma once

#include <QStringList>
#include <mutex>
#include <optional>

#include "imaging/Outcome.h"
#include "imaging/process/SuddenEnd.h"

namespace lumirra {

/// The folder where frames are left for the user. Until `Keep` is called, everything that was put
/// there goes again at the end of its life.
class KeptFrames {
  public:
    KeptFrames() = default;
    ~KeptFrames();
    KeptFrames(const KeptFrames&) = delete;
    KeptFrames& operator=(const KeptFrames&) = delete;

    /// Makes the folder when it is not there (the one that holds it must be). Refuses one that
    /// already has frames in it.
    std::optional<Failure> Open(const QString& folder);
    /// Moves the frames there as "frame00001.png" ...; gives their new paths.
    Outcome<QStringList> Take(const QStringList& framePaths);
    void Keep();

  private:
    void Remove() const;

    QString folder_;
    bool made_ = false;
    bool kept_ = false;
    mutable std::mutex mutex_;  ///< of what was taken
    QStringList taken_;
    AtSuddenEnd atSuddenEnd_{[this] { Remove(); }};
};

}  // namespace lumirra
