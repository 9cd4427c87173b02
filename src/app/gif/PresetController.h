#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <optional>
#include <vector>

#include "output/size/LimitAdvice.h"
#include "project/presets/PresetFit.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Project;
class Session;

/// The pop-up of places where the GIF may go, and what is to be said before generating: what the
/// place does not take of the frames, what it would take, and a smaller width where that helps.
/// Main thread.
class PresetController : public QObject {
    Q_OBJECT

  public:
    /// `userFile` may hold more presets; one that cannot be understood is told of in the tab.
    PresetController(Project& project, Session& session, Ui::MainWindow& ui,
                     const QString& userFile);

    void ShowLimitAdvice(const std::optional<LimitAdvice>& advice);
    void UseOfferedWidth();

  private:
    void Load(const QString& userFile);
    void Choose(int item);
    void Follow();
    const Preset* Chosen() const;
    void ShowAdvice();
    void ScrollToAdvice();

    Project& project_;
    Session& session_;
    Ui::MainWindow& ui_;
    std::vector<Preset> presets_;
    QString problem_;  ///< with the user's own file
    std::vector<Misfit> misfits_;
    std::optional<LimitAdvice> limitAdvice_;
    std::optional<int> offeredWidth_;
    QTimer scroll_;
};

}  // namespace lumirra
