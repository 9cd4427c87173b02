#pragma once

#include <QObject>
#include <functional>
#include <vector>

#include "jobs/WorkerThread.h"
#include "project/recovery/LeftSessions.h"
#include "sources/TemporaryFolder.h"

namespace lumirra {

class Dialogs;
class NoticeBar;
class Project;
class Session;

/// Sessions of earlier runs: tells of the interrupted ones, brings back what a person chooses. Main
/// thread.
class RecoveryController : public QObject {
    Q_OBJECT

  public:
    RecoveryController(Project& project, Session& session, Dialogs& dialogs, NoticeBar& notices);

    /// Looks for them in the background.
    void Look();
    /// The last session that ended in order comes back; nothing happens when there is none.
    void ReopenLast();
    /// The project's frames are kept where they are now: a session that was restored is not needed
    /// in its old place any more.
    void ForgetRestored();
    /// The project cannot be kept just now.
    void TellFailure(const QString& reason);

  Q_SIGNALS:
    /// A session is about to take the place of what is open.
    void Restoring();
    /// From the worker.
    void Answered(const std::function<void()>& deliver);

  private:
    void Show(const LeftSessions& found);
    void Offer(const LeftSession& left);
    /// False when it has to be kept for another try, which is told.
    bool Restore(const QString& folder);
    bool TakeIn(const QString& folder, SavedSession session);

    Project& project_;
    Session& session_;
    Dialogs& dialogs_;
    NoticeBar& notices_;
    QString lastFolder_;  ///< empty when there is none to reopen
    std::vector<TemporaryFolder> restored_;
    WorkerThread worker_;
};

}  // namespace lumirra
