#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>

#include "output/animation/Canvas.h"

namespace lumirra {

/// One picture of an animation and how long it is shown.
struct TimedCanvas {
    Canvas canvas;
    int delay = 10;  ///< hundredths of a second, 1..kLongestDelay
};

constexpr int kLongestDelay = 65535;

struct AnimationOptions {
    int width = 0;
    int height = 0;
    int entries = 0;                     ///< pictures to ask for
    std::optional<std::uint16_t> loops;  ///< 0: for ever; absent: the file does not say
    double quality = 90;                 ///< 1..100
    int threads = 0;                     ///< 0: one for each core
};

/// Where pictures come from and bytes go.
struct AnimationPorts {
    /// The picture of that number, width x height pixels, or nothing to leave it out. Called once
    /// for each number, by several threads at a time.
    std::function<std::optional<TimedCanvas>(int)> load;
    /// Bytes of the file, in order, on the calling thread; false ends the run.
    std::function<bool(std::span<const std::uint8_t>)> write;
    /// Entries done with, on the calling thread.
    std::function<void(int)> progress;
    /// Bytes of each picture's own data, on the calling thread; may be absent.
    std::function<void(std::size_t)> pictureData;
};

enum class EncodeEnd { Complete, Stopped, WriteFailed, OutOfMemory };

struct EncodeSummary {
    EncodeEnd end = EncodeEnd::Complete;
    int pictures = 0;  ///< 0 with `Complete`: none could be loaded and nothing was written
};

/// What a file format can hold.
struct AnimationLimits {
    int longestSide = 0;     ///< pixels
    bool softAlpha = false;  ///< else alpha is 0 or 255, and pixels of alpha 0 are all zero
};

/// Writes one kind of animation file. Stateless: any thread, any number at a time.
class AnimationEncoder {
  public:
    AnimationEncoder() = default;
    AnimationEncoder(const AnimationEncoder&) = delete;
    AnimationEncoder& operator=(const AnimationEncoder&) = delete;
    virtual ~AnimationEncoder() = default;

    /// What people call the format, for messages.
    virtual QString Name() const = 0;
    virtual AnimationLimits Limits() const = 0;

    /// Encodes all entries with few of them in memory. The bytes are the same for any number of
    /// threads.
    virtual EncodeSummary Encode(const AnimationOptions& options, const AnimationPorts& ports,
                                 const std::stop_token& stop) const = 0;

    /// Bytes of the picture data of that many pixels when nothing changes: what an estimate from a
    /// part of the rows must not scale with the area.
    virtual double UnchangedBytes(long long pixels) const = 0;
};

}  // namespace lumirra
