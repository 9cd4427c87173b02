#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "output/animation/Canvas.h"
#include "output/gif/GifBlocks.h"

namespace lumirra::gif {

/// One image on its way through the stages; each stage frees what no later one needs.
struct GifFrame {
    Canvas source;
    int delay = 10;  ///< hundredths of a second

    // From `FrameStages::Prepare`.
    Canvas target;
    std::vector<std::uint8_t> changed;
    std::vector<std::uint8_t> lifetimes;
    std::optional<std::vector<Rgba>> exactColors;  ///< that an exact image has to draw with
    Disposal disposal = Disposal::Keep;
    bool blankScreen = false;
    std::vector<Rgba> palette;
    bool filePalette = false;

    // From `FrameStages::Encode`.
    std::vector<std::uint8_t> data;
    std::atomic<int> rowsDone = 0;

    void FinishRows(int rows) {
        rowsDone.store(rows, std::memory_order_release);
        rowsDone.notify_all();
    }
    /// Wakes every thread that waits for rows of this frame.
    void Release() { FinishRows(std::numeric_limits<int>::max()); }
};

}  // namespace lumirra::gif
