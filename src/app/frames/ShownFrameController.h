#pragma once

#include <QObject>
#include <QShortcut>

#include "jobs/LatestWorker.h"
#include "project/Edit.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Project;
class Session;

/// Shows the selected frame itself, large, in place of the source's picture. Selecting another one
/// shows that; Escape, a click, and all that gives the panel another picture go back. Main thread.
class ShownFrameController : public QObject {
    Q_OBJECT

  public:
    ShownFrameController(const Project& project, const Session& session, Ui::MainWindow& ui);

    /// Only with one frame selected. Shown already: goes back.
    void ShowOrHide();
    void Hide();

  private:
    void Follow(ProjectChanges what);
    void Show(int index);
    int SelectedIndex() const;

    const Project& project_;
    const Session& session_;
    Ui::MainWindow& ui_;
    FrameId shown_ = 0;
    QShortcut escape_;
    LatestWorker reader_;
};

}  // namespace lumirra
