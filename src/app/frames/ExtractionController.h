#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <memory>

#include "app/frames/JobStatus.h"
#include "project/Edit.h"
#include "sources/Extraction.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Dialogs;
class Project;
class Session;

/// Adds frames automatically: a long job over the source, with progress; what it adds is one step.
/// At rest it says what a run would add. Main thread.
class ExtractionController : public QObject {
    Q_OBJECT

  public:
    ExtractionController(Project& project, Session& session, Dialogs& dialogs, Ui::MainWindow& ui);

    /// Nothing happens while a picture is being rendered.
    void AddFramesAutomatically();

  Q_SIGNALS:
    /// A run is about to begin: what plays has to stop.
    void Starting();

  private:
    void Start();
    void ShowProgress(const ExtractionProgress& progress);
    void Finish(const ExtractionResult& result);
    /// The frames that have come in since the last time join the list.
    void TakeOver();
    void ShowPlan();

    Project& project_;
    Session& session_;
    Dialogs& dialogs_;
    Ui::MainWindow& ui_;
    QList<ExtractedFrame> arrived_;
    std::shared_ptr<const ControlValues> settings_;  ///< of the run
    JobStatus status_;
    QElapsedTimer sinceTakenOver_;
};

}  // namespace lumirra
