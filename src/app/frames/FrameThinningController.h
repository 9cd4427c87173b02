#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <atomic>
#include <memory>

#include "jobs/LatestWorker.h"
#include "project/Edit.h"
#include "project/sequence/PictureSignature.h"

class QWidget;

namespace lumirra {

class Dialogs;
class NearDuplicatesDialog;
class Project;

/// Removes frames that are not needed: all but every n-th, or those that look like the one before.
/// Main thread.
class FrameThinningController : public QObject {
    Q_OBJECT

  public:
    /// Its own dialog stands over `window`.
    FrameThinningController(Project& project, Dialogs& dialogs, QWidget& window);

    /// Asks which.
    void KeepEveryNth();
    /// Opens a dialog, reads the frames in the background meanwhile, and says what would go before
    /// it goes. Closing the dialog stops the reading.
    void RemoveNearDuplicates();

  private:
    using Looks = QHash<FrameId, PictureSignature>;
    /// How far the reading is; shared with the worker.
    struct Reading {
        std::atomic<int> read = 0;
        int total = 0;
    };

    static Looks LooksOf(const QList<Frame>& frames, Reading& reading, const std::stop_token& stop);
    void Read();
    void ShowReading();
    void ShowResult();
    Edit EditOfDialog() const;

    Project& project_;
    Dialogs& dialogs_;
    QWidget& window_;
    QPointer<NearDuplicatesDialog> dialog_;
    std::shared_ptr<Reading> reading_;
    Looks looks_;
    bool isRead_ = false;
    QTimer progress_;
    LatestWorker worker_;
};

}  // namespace lumirra
