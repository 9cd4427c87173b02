#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <functional>
#include <stop_token>
#include <vector>

#include "imaging/EffectSettings.h"
#include "imaging/Geometry.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// The positions of an automatic run over a video: a forward pass and, when circular, the way back
/// to the start, the frame at the end taken once.
struct ExtractionPlan {
    int count = 1;    ///< frames of the forward pass
    double step = 0;  ///< in position units
    double start = 0;
    bool circular = false;

    int Total() const { return circular ? 2 * count - 1 : count; }
    /// The forward frame that the picture stored as number `index` (0..Total()-1) shows.
    int FrameOf(int index) const { return index < count ? index : 2 * count - 2 - index; }
    double PositionOf(int index) const { return FrameOf(index) * step + start; }
    double PercentAfter(int index) const { return (index + 1) * 100.0 / Total(); }
};

/// The most frames one pass may have; a plan of more fails as `TooLarge`.
inline constexpr int kMaxPlannedFrames = 100'000'000;

/// A number of frames spread over the markers, or as many as it takes for no two to be further
/// apart than the interval. A video without duration and a single frame: the frame at the start.
/// Values that are not finite, less than one frame and an interval that is not positive are refused
/// as `Invalid`.
Outcome<ExtractionPlan> PlanExtraction(const ExtractionSettings& settings, double durationSeconds,
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

/// A complete frame of a run, and what of the source it shows.
struct ExtractedFrame {
    QString path;
    QSize size;      ///< pixels
    QString source;  ///< of the video or the picture
    bool video = false;
    double position = 0;  ///< of the video
};

struct ExtractionProgress {
    int stored = 0;  ///< pictures dealt with so far
    int total = 0;
    double percent = 0;  ///< of the window's progress bar
};

struct ExtractionResult {
    QStringList framePaths;         ///< complete frames, in order; sorting by name keeps it
    std::vector<Failure> problems;  ///< pictures left out or not whole, in order
    bool stopped = false;           ///< by the stop token; frames stored so far stay
    bool endedEarly = false;        ///< for the last of the problems; frames stored so far stay
};

/// Why frames of that size cannot be made.
Failure FrameTooLarge(const ImageSize& size);

/// Reads, renders and stores every picture of the job, in order whatever the number of threads.
/// `onFrame` is called for each stored frame and `onProgress` after each picture, both on the
/// calling thread and in order. A picture that cannot be read or written is left out; one that has
/// no area, a directory that takes no files and want of memory end the run. Where frames would be
/// larger than they may be, as the headers tell, it does not begin. Nothing is thrown but what the
/// two callbacks throw. Memory does not grow with the number of frames.
ExtractionResult RunExtraction(const ExtractionJob& job, const std::stop_token& stop,
                               const std::function<void(const ExtractedFrame&)>& onFrame,
                               const std::function<void(const ExtractionProgress&)>& onProgress);

}  // namespace lumirra
