#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

#include "app/frames/JobStatus.h"
#include "project/Frame.h"
#include "project/sequence/CrossFade.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Dialogs;
class Project;
class Session;

/// Finds what can be repeated, and fades an end into a beginning: long jobs with progress, one step
/// each. Cancelled or in vain, nothing changes. Main thread.
class LoopController : public QObject {
    Q_OBJECT

  public:
    LoopController(Project& project, Session& session, Dialogs& dialogs, Ui::MainWindow& ui);

    /// Asks how long at least. Between the markers of a video, which are then set to the loop, or
    /// among the frames, of which only the loop stays.
    void FindLoop();
    /// Asks how many of the last frames fade into the first ones.
    void CrossFadeEnds();

  Q_SIGNALS:
    /// A job is about to begin: what plays has to stop.
    void Starting();

  private:
    using Work = std::function<std::function<void()>(const std::stop_token&)>;
    struct Fading;

    void SearchVideo(double leastSeconds);
    void SearchFrames(double leastSeconds);
    /// `work` gives what is to be done on the main thread when it was not cancelled.
    void Start(const Work& work);
    /// What is to be done when there is no result: says why.
    std::function<void()> Refusal(const QString& why);
    void TellProgress(int done, int total);
    void ApplyFade(Fading& fading);

    Project& project_;
    Session& session_;
    Dialogs& dialogs_;
    JobStatus status_;
};

}  // namespace lumirra
