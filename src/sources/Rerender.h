#pragma once

#include <QSize>
#include <QString>
#include <functional>
#include <stop_token>
#include <vector>

#include "imaging/EffectSettings.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// A picture of a source that is to be rendered once more.
struct RerenderTask {
    QString source;  ///< path of the video or the picture
    bool video = false;
    double position = 0;  ///< in the video
};

struct RerenderJob {
    std::vector<RerenderTask> tasks;
    /// The video whose frames get the settings' width and height; all others are scaled by the
    /// settings' percentage.
    QString sizedVideo;
    QString directory;  ///< where frames are stored
    ExtractionSettings settings;
    int threads = 0;  ///< 0: one for each core
};

struct RerenderedFrame {
    int task = 0;  ///< its index
    QString path;
    QSize size;  ///< pixels
};

struct RerenderResult {
    std::vector<Failure> problems;  ///< of tasks without a frame, in order
    bool stopped = false;           ///< by the stop token; frames stored so far stay
};

/// Reads, renders and stores each task's picture as an automatic run over its source would, in
/// order whatever the number of threads. `onFrame` is called for each stored frame, `onProgress`
/// after each task with the number done, both on the calling thread. A picture that cannot be read,
/// would be too large or cannot be written is left out; want of memory ends the work. Memory does
/// not grow with the number of tasks.
RerenderResult RerenderFrames(const RerenderJob& job, const std::stop_token& stop,
                              const std::function<void(const RerenderedFrame&)>& onFrame,
                              const std::function<void(int done)>& onProgress);

}  // namespace lumirra
