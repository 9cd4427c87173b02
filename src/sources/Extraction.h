#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <stop_token>
#include <vector>

#include "imaging/EffectSettings.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// The positions of an automatic run over a video.
struct ExtractionPlan {
    int count = 1;    ///< frames of the forward pass
    double step = 0;  ///< in position units
    bool circular = false;
    std::vector<double> positions;  ///< in order of storing, the backward pass included
};

ExtractionPlan PlanExtraction(const ExtractionSettings& settings, double durationSeconds,
                              float startPosition, float endPosition);

/// What a run works on; a copy, so that nothing changes under it.
struct ExtractionJob {
    QString videoPath;  ///< or empty:
    QStringList imagePaths;
    float startPosition = 0;
    float endPosition = 1;
    QString directory;  ///< where frames are stored
    ExtractionSettings settings;
    int threads = 0;  ///< 0: one for each core
};

struct ExtractionProgress {
    int stored = 0;  ///< pictures dealt with so far
    int total = 0;
    int percent = 0;  ///< of the window's progress bar
};

struct ExtractionResult {
    QStringList framePaths;         ///< complete frames, in order
    std::vector<Failure> problems;  ///< pictures left out or not whole, in order
    bool stopped = false;           ///< by the stop token; frames stored so far stay
};

/// Reads, renders and stores every picture of the job, in order whatever the number of threads.
/// `onFrame` is called for each stored path and `onProgress` after each picture, both on the
/// calling thread and in order. Memory does not grow with the number of frames.
ExtractionResult RunExtraction(const ExtractionJob& job, std::stop_token stop,
                               const std::function<void(const QString&)>& onFrame,
                               const std::function<void(const ExtractionProgress&)>& onProgress);

}  // namespace lumirra
