#pragma once

#include <QMainWindow>
#include <memory>

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Theme;

/// The window without its behaviour: every control of the interface file, dressed by the table of
/// controls but without a value, its icons, the theme menu, and the places of the splitters
/// remembered from run to run.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    explicit MainWindow(Theme& theme);
    ~MainWindow() override;

    Ui::MainWindow& Controls() { return *controls_; }

    /// Keeps size and splitters in the user's settings; `RestoreLayout` is called on construction.
    void SaveLayout() const;

  private:
    void PreparePanel();
    void LeaveFocusToKeys();
    void PrepareThemeMenu(Theme& theme);
    void RestoreLayout();

    std::unique_ptr<Ui::MainWindow> controls_;
};

}  // namespace lumirra
