#pragma once

#include <QObject>

namespace lumirra {

class Dialogs;
class Project;

/// Saves the project's settings as a profile and loads them from one. Main thread.
class ProfileController : public QObject {
    Q_OBJECT

  public:
    ProfileController(Project& project, Dialogs& dialogs);

    /// Nothing happens without unsaved changes. Without a path it asks for one.
    void Save();
    void SaveAs();
    /// Asks first when unsaved changes would be lost.
    void Load();

  private:
    void Write(const QString& path);

    Project& project_;
    Dialogs& dialogs_;
};

}  // namespace lumirra
