#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <stop_token>

#include "sources/video/VideoStream.h"

namespace lumirra {

/// Finds the frame that is shown at a time, decoding on when that is the shortest way and seeking
/// back or ahead when not.
class VideoFrameFinder {
  public:
    /// Frames passed on the way are kept as long as they take no more than `keepBytes`, so that
    /// going back to them costs nothing.
    VideoFrameFinder(VideoStream stream, long long keepBytes)
        : stream_(std::move(stream)), keepBytes_(keepBytes) {}

    struct Found {
        const VideoFrame* frame = nullptr;  ///< valid until the next call; null: none at all
        bool lost = false;                  ///< the frame of that very time was lost to damage
    };
    /// The last frame whose time is not after `time` (ticks from the film's start); before the
    /// first frame the first.
    Found At(std::int64_t time, const std::stop_token& stop);

    using Clock = std::chrono::steady_clock;
    struct Approach {
        const VideoFrame* frame = nullptr;  ///< valid until the next call; null: none yet
        bool arrived = false;               ///< it is what `At` gives
    };
    /// Decodes towards the frame of `time` until then, at least one frame, and gives the nearest
    /// one that is at hand: on the way, or held before the way was taken. Called again for the same
    /// time it comes nearer.
    Approach Near(std::int64_t time, Clock::time_point until, const std::stop_token& stop);

    const VideoStream& Stream() const { return stream_; }

  private:
    void Enter(std::int64_t time);
    void KeepNearest(std::int64_t time);
    bool HasArrived(std::int64_t time) const {
        return ended_ || (!frames_.empty() && frames_.back().time > time);
    }
    const VideoFrame* Shown(std::int64_t time) const;
    void Pull();
    void Forget();
    bool Covers(std::int64_t time) const;

    VideoStream stream_;
    std::deque<VideoFrame> frames_;  // neighbours in order of display, the last one read at the end
    bool ended_ = false;
    std::optional<std::int64_t> lostAtEnd_;
    std::optional<VideoFrame> aside_;  // of the frames held before the last jump, the nearest
    long long keepBytes_;
    long long keptBytes_ = 0;
};

}  // namespace lumirra
