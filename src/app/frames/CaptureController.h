#pragma once

#include <QImage>
#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

#include "imaging/EffectSettings.h"
#include "imaging/Outcome.h"
#include "jobs/WorkerThread.h"
#include "project/Frame.h"

namespace lumirra {

class Dialogs;
class Project;
class Session;
class VideoImageView;

/// Takes the picture shown as a frame. Several may be on their way at once. Main thread.
class CaptureController : public QObject {
    Q_OBJECT

  public:
    CaptureController(Project& project, const Session& session, Dialogs& dialogs,
                      const VideoImageView& view);
    /// Frees the places of frames that are still on their way.
    ~CaptureController() override;

    /// Crops and sizes the picture shown and stores it in the background, then appends it. Nothing
    /// happens while another picture is being rendered.
    void AddFrame();
    /// Captures that have not come back yet will not become frames.
    void Forget();

  Q_SIGNALS:
    /// From the worker: what becomes of a capture.
    void Answered(const std::function<void()>& deliver);

  private:
    struct Capture;
    /// On the worker.
    static Outcome<Done> Stored(const QImage& shown, const CaptureSettings& settings,
                                Capture& capture);
    void Finish(const Capture& capture, const Outcome<Done>& stored);

    Project& project_;
    const Session& session_;
    Dialogs& dialogs_;
    const VideoImageView& view_;
    QStringList inFlight_;  ///< claimed paths
    WorkerThread worker_;
};

}  // namespace lumirra
