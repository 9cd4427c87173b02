#pragma once

#include <QObject>
#include <memory>

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Dialogs;
class Film;
class Project;
class Session;

/// Plays the video in the panel. Main thread.
class PlaybackController : public QObject {
    Q_OBJECT

  public:
    PlaybackController(const Project& project, Session& session, Dialogs& dialogs,
                       Ui::MainWindow& ui);
    ~PlaybackController() override;

    bool IsPlaying() const { return film_ != nullptr; }

    /// From the beginning. Nothing happens while a picture is rendered.
    void Play();
    /// The still picture stands again; nothing happens when nothing plays.
    void Stop();

  private:
    void ShowCloseButton();

    const Project& project_;
    Session& session_;
    Dialogs& dialogs_;
    Ui::MainWindow& ui_;
    std::unique_ptr<Film> film_;
};

}  // namespace lumirra
