#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <stop_token>

#include "imaging/Outcome.h"

namespace lumirra {

/// A part of a video that can be repeated.
struct VideoLoop {
    float start = 0;  ///< position of its first picture, a little behind the picture's begin
    float end = 1;    ///< of its last
    double seconds = 0;
    double difference = 0;  ///< between its ends, in levels; see `Loop`
    int step = 1;           ///< every which picture was compared
};

/// The most pictures that are compared; of a longer part every n-th.
inline constexpr int kMostLoopPictures = 3000;

/// The part of at least `leastSeconds` between two positions whose ends match best; see `FindLoop`.
/// Nothing when the pictures there are too few, or when stopped; a failure when one of them cannot
/// be read whole. `onProgress` is told of the
/// pictures read, on the calling thread. Any thread.
Outcome<std::optional<VideoLoop>> FindVideoLoop(
    const QString& path, float startPosition, float endPosition, double leastSeconds,
    const std::stop_token& stop, const std::function<void(int done, int total)>& onProgress);

}  // namespace lumirra
