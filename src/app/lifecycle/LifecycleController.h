#pragma once

#include <QObject>

namespace lumirra {

class Dialogs;
class Project;

/// The beginning and the end of a project: New, and the question before the window closes. Main
/// thread.
class LifecycleController : public QObject {
    Q_OBJECT

  public:
    LifecycleController(Project& project, Dialogs& dialogs);

    /// Asks first when unsaved changes would be lost.
    void New();
    /// Whether the window may close.
    bool MayClose();

  Q_SIGNALS:
    /// The project is about to be left: what runs for it has to stop.
    void Leaving();

  private:
    Project& project_;
    Dialogs& dialogs_;
};

}  // namespace lumirra
