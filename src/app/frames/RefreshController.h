#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <memory>

#include "app/frames/JobStatus.h"
#include "project/Frame.h"
#include "sources/Rerender.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Dialogs;
class Project;
class Session;

/// Renders frames again from their sources with the settings of now: a long job with progress; one
/// step, when all of them are there. Main thread.
class RefreshController : public QObject {
    Q_OBJECT

  public:
    RefreshController(Project& project, Session& session, Dialogs& dialogs, Ui::MainWindow& ui);

    /// The selected frames, or all. Those whose source is not known or has gone stay as they are,
    /// which is told. Cancelled, nothing changes.
    void Refresh();

  Q_SIGNALS:
    /// The job is about to begin: what plays has to stop.
    void Starting();

  private:
    RerenderJob JobOf(const QList<Frame>& frames);
    void Start(RerenderJob job);
    void Finish(const RerenderResult& result);
    QHash<FrameId, Frame> TakeOver();
    QString ResultText(const RerenderResult& result, qsizetype refreshed) const;

    Project& project_;
    Session& session_;
    Dialogs& dialogs_;
    JobStatus status_;
    QList<QList<FrameId>> framesOf_;  ///< by task: the frames that show its picture
    std::vector<RerenderTask> tasks_;
    QList<RerenderedFrame> arrived_;
    qsizetype unknown_ = 0;  ///< frames whose source is not known
    std::shared_ptr<const ControlValues> settings_;
};

}  // namespace lumirra
