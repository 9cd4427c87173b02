#pragma once

#include <QSet>
#include <QString>

#include "imaging/Outcome.h"
#include "project/Document.h"

namespace lumirra {

/// Writes what is needed to go on with a project into the folder of its frames, so that it outlives
/// the run, a crash and a loss of power: the frames are on the disk before the index that names
/// them. One thread at a time.
class SessionWriter {
  public:
    explicit SessionWriter(QString folder) : folder_(std::move(folder)) {}

    /// `ended`: in order, by the person. Without frames nothing is kept. When it fails, what was
    /// written before still stands.
    Outcome<Done> Write(const Document& document, bool ended);

  private:
    Outcome<Done> SyncNew(const FrameList& frames);

    QString folder_;
    QSet<QString> synced_;  ///< paths of frames that are on the disk
    bool kept_ = false;
};

}  // namespace lumirra
