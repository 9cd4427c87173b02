#pragma once

#include <QString>
#include <memory>
#include <stop_token>

#include "imaging/DisplayTransform.h"
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
    DisplayTransform display;    ///< of its pictures
    QString codec;
    QString pixelFormat;
    QString colorMatrix;  ///< as used: "bt709", "bt601", "bt2020" ...
    QString colorTransfer;
    QString colorPrimaries;
    bool fullRange = false;
    bool colorTagged = false;  ///< false: matrix assumed from the size
    bool hasSound = false;
    bool decodable = true;  ///< false: not one picture can be decoded, every position is white
};

struct VideoReaderOptions {
    /// Decoded pictures kept for going back to. Without them a step back costs decoding again from
    /// the key frame before; a run of ascending positions needs none.
    long long keepBytes = 0;
};

/// For positions that follow somebody's hand: a few seconds of film.
inline constexpr VideoReaderOptions kScrubbing = {160LL << 20};

/// What `VideoReader::Near` gives.
struct NearImage {
    SourceImage picture;
    bool exact = false;  ///< as `VideoReader::At`
};

class OpenedVideo;

/// An open video that serves pictures by position. Ascending positions are served by decoding on;
/// any other order works by seeking. Not thread-safe; may move between threads.
class VideoReader {
  public:
    /// Fails for anything without a video track of a known, reasonable size; the message says why.
    static Outcome<VideoReader> Open(const QString& path, const VideoReaderOptions& options = {});

    VideoReader(VideoReader&&) noexcept;
    VideoReader& operator=(VideoReader&&) noexcept;
    ~VideoReader();

    const VideoInfo& Info() const;

    /// The last frame whose time stamp, from the film's start, is not after duration * position;
    /// the first before that, the last beyond the end. A picture that the decoder gives in spite of
    /// damage comes with a problem; one that it does not give is white, of the stored size, with a
    /// problem. Null, with a problem, for want of memory; told to stop it gives no picture, and a
    /// problem of that kind.
    SourceImage At(double position, const std::stop_token& stop = {});

    /// A picture near the position in the time that a moving hand leaves: decodes towards it for a
    /// moment and gives the nearest one at hand. Asked again for the same position it comes
    /// nearer, until it is the one that `At` gives.
    NearImage Near(double position, const std::stop_token& stop = {});

  private:
    explicit VideoReader(std::unique_ptr<OpenedVideo> video);
    std::unique_ptr<OpenedVideo> video_;
};

}  // namespace lumirra
