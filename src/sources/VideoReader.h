#pragma once

#include <QString>
#include <memory>

#include "imaging/Outcome.h"
#include "sources/VideoTools.h"

namespace lumirra {

struct VideoInfo {
    double durationSeconds = 0;
    int storedWidth = 0;  ///< as stored, before rotation and pixel aspect
    int storedHeight = 0;
    int shownWidth = 0;  ///< upright, square pixels
    int shownHeight = 0;
    double framesPerSecond = 0;  ///< average; 0 when unknown
    int rotationDegrees = 0;     ///< clockwise, to be shown upright
    QString codec;
    QString pixelFormat;
    QString colorMatrix;  ///< as used: "bt709", "bt601", "bt2020" ...
    QString colorTransfer;
    QString colorPrimaries;
    bool fullRange = false;
    bool colorTagged = false;  ///< false: matrix assumed from the size
    bool hasSound = false;
};

/// An open video that serves pictures by position. Ascending positions are served by decoding on;
/// any other order works by seeking. Not thread-safe; may move between threads.
class VideoReader {
  public:
    /// Fails for anything without a decodable video stream; the message says why.
    static Outcome<VideoReader> Open(const QString& path);

    VideoReader(VideoReader&&) noexcept;
    VideoReader& operator=(VideoReader&&) noexcept;
    ~VideoReader();

    const VideoInfo& Info() const;

    /// The last frame whose time stamp, from the stream's start, is not after duration * position;
    /// the last frame beyond the end; white with a problem when it cannot be decoded.
    SourceImage At(double position);

  private:
    struct State;
    explicit VideoReader(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace lumirra
