#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <optional>

#include "app/controls/ControlWidgets.h"

namespace lumirra {

class Project;

/// Keeps the setting controls and the project's settings the same: what a person changes becomes an
/// edit, and every change of the project is shown. Main thread.
class SettingsController : public QObject {
    Q_OBJECT

  public:
    SettingsController(Project& project, const QWidget& window);

    void OnControlEdited(Control control, const edits::ControlInput& input);
    /// The reset command of the group.
    void Reset(ResetGroup group);
    /// What is being typed counts as if the field had been left.
    void CommitTyping() { widgets_.CommitTyping(); }

  private:
    int MergeKey(Control control, bool held);

    Project& project_;
    ControlWidgets widgets_;
    QElapsedTimer sinceEdit_;
    std::optional<Control> lastEdited_;
};

}  // namespace lumirra
