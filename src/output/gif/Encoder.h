#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>

#include "output/gif/Picture.h"

namespace lumirra::gif {

struct EncoderOptions {
    int width = 0;
    int height = 0;
    int entries = 0;  ///< frames to ask for
    int delayHundredths = 10;
    std::optional<std::uint16_t> loops;
    double quality = 90;  ///< 1..100
    int threads = 0;      ///< 0: one for each core
};

/// Where frames come from and bytes go.
struct EncoderPorts {
    /// The frame of that number on the canvas, or nothing to leave it out. Called once for each, by
    /// several threads at a time.
    std::function<std::optional<Picture>(int)> load;
    /// Bytes of the file, in order, on the calling thread; false ends the run.
    std::function<bool(std::span<const std::uint8_t>)> write;
    /// Entries done with, on the calling thread.
    std::function<void(int)> progress;
    /// Bytes of each image's data, on the calling thread; may be absent.
    std::function<void(std::size_t)> imageData;
};

enum class EncodeEnd { Done, Stopped, WriteFailed, OutOfMemory };

struct EncodeSummary {
    EncodeEnd end = EncodeEnd::Done;
    int images = 0;  ///< 0 with `Done`: no frame could be loaded and nothing was written
};

/// Encodes frame after frame with few of them in memory. Frames overlap on the threads, row by row;
/// the bytes are the same for any number of threads.
EncodeSummary Encode(const EncoderOptions& options, const EncoderPorts& ports,
                     const std::stop_token& stop);

}  // namespace lumirra::gif
