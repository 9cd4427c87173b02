#pragma once

#include <QObject>
#include <QString>
#include <vector>

#include "project/Edit.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Dialogs;
class Project;

/// How long frames are shown: what the strip says about each, the field for the delay of the
/// selected ones, the sum of all. Main thread.
class FrameTimingController : public QObject {
    Q_OBJECT

  public:
    FrameTimingController(Project& project, Dialogs& dialogs, Ui::MainWindow& ui);

    /// The keyboard goes to the field of the delay.
    void EditDelay();
    /// Asks how many times as fast.
    void ChangeSpeed();
    /// What was typed takes effect, as when the field is left.
    void CommitTyping();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Follow(ProjectChanges what);
    void ShowDelay();
    /// When viewers show each frame, and where the last one ends: milliseconds.
    const std::vector<qint64>& Starts() const;
    QString Caption(int index) const;
    QString Badge(int index) const;

    Project& project_;
    Dialogs& dialogs_;
    Ui::MainWindow& ui_;
    QString shownDelay_;                  ///< the field's text when nothing is typed
    mutable std::vector<qint64> starts_;  ///< empty: not known just now
};

}  // namespace lumirra
