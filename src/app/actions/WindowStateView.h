#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "app/actions/CommandActions.h"
#include "app/window/ControlDressing.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

/// Shows what can be used just now: the one place that enables, disables, shows and hides controls,
/// commands and the parts of the panel, by `WindowState.h`. Follows project and session. Main
/// thread.
class WindowStateView : public QObject {
    Q_OBJECT

  public:
    /// All must outlive this.
    WindowStateView(QWidget& window, Ui::MainWindow& ui, CommandActions& actions,
                    const Project& project, const Session& session);

    void Refresh();

  private:
    void ReleaseFocus(const WindowFacts& facts);
    void ReturnFocus();
    void ShowPanel(const WindowFacts& facts);

    QWidget& window_;
    Ui::MainWindow& ui_;
    CommandActions& actions_;
    const Project& project_;
    const Session& session_;
    SettingWidgets controls_;
    QPointer<QWidget> focusBeforeLock_;
};

}  // namespace lumirra
