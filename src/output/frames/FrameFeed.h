#pragma once

#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "output/GifWriter.h"
#include "output/frames/CanvasFit.h"

namespace lumirra {

/// Loads frames for the encoder's threads and remembers which could not be read. Any thread.
class FrameFeed {
  public:
    /// Both must outlive the feed.
    FrameFeed(const GifRequest& request, const CanvasFit& fit) : request_(request), fit_(fit) {}

    std::optional<gif::Picture> Load(int entry);
    /// Why frames are missing, in the order of the frames.
    std::vector<Failure> TakeLeftOut();

  private:
    const GifRequest& request_;
    const CanvasFit& fit_;
    std::mutex mutex_;
    std::vector<std::pair<int, Failure>> leftOut_;
};

}  // namespace lumirra
