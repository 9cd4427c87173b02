#pragma once

#include <QObject>
#include <memory>

#include "app/preview/PreviewSource.h"
#include "jobs/LatestWorker.h"
#include "project/Edit.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Project;
class Session;

/// Shows the picture of the source where one stands, with the settings of now: renders it in the
/// background whenever the project asks for it, and learns from it. Main thread.
class PreviewController : public QObject {
    Q_OBJECT

  public:
    PreviewController(Project& project, Session& session, Ui::MainWindow& ui);
    ~PreviewController() override;

    /// Renders the picture again; while one is being rendered, once more after it.
    void UpdateVideoPreview() { Request(LatestWorker::Older::Dropped); }

    /// Another picture than the one being rendered will be shown (`selectionChanged`).
    bool IsReplaced() const { return worker_.IsReplaced(); }

  Q_SIGNALS:
    /// A picture is about to be rendered: what plays has to stop.
    void Starting();

  private:
    void Follow(ProjectChanges what);
    void Request(LatestWorker::Older older);
    void Show(const PreviewResult& result);
    void ShowNothing();

    Project& project_;
    Session& session_;
    Ui::MainWindow& ui_;
    std::shared_ptr<PreviewSource> source_;
    QString shownPath_;        ///< of the source that pictures are asked for
    bool exactAsked_ = false;  ///< by the last request
    LatestWorker worker_;
};

}  // namespace lumirra
