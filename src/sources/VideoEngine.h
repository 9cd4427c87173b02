#pragma once

#include <QIODevice>
#include <QImage>
#include <QString>
#include <memory>

#include "imaging/Outcome.h"
#include "imaging/Versions.h"
#include "sources/VideoReader.h"

namespace lumirra {

/// An open video: what `VideoReader` hands its calls to.
class OpenedVideo {
  public:
    virtual ~OpenedVideo() = default;
    virtual const VideoInfo& Info() const = 0;
    virtual SourceImage At(double position, const std::stop_token& stop) = 0;
    virtual NearImage Near(double position, const std::stop_token& stop) = 0;
};

/// All that needs the media libraries. These bring more than a hundred others with them, so the
/// engine is a library of its own, loaded when the first video is opened. Any thread.
class VideoEngine {
  public:
    virtual ~VideoEngine() = default;
    virtual Outcome<std::unique_ptr<OpenedVideo>> Open(const QString& path,
                                                       const VideoReaderOptions& options) const = 0;
    /// In seconds; 0 when the file is not a readable video.
    virtual double Duration(const QString& path) const = 0;
    /// As `VideoInfo::display`, nothing decoded; no change at all when the file is not a video.
    virtual DisplayTransform Display(const QString& path) const = 0;
    /// Why the file cannot be opened as a video; nothing when it can. Decodes nothing to be shown.
    virtual std::optional<Failure> VideoProblem(const QString& path) const = 0;
    /// Whether a single picture is in the file, by what is in it.
    virtual bool HoldsPicture(const QString& path) const = 0;
    /// The picture of a JPEG 2000 file, read from the device's start; RGBA8888, null when it cannot
    /// be decoded. Its size must have been checked before. As the readers below it throws
    /// std::bad_alloc.
    virtual QImage ReadJpeg2000(QIODevice& device) const = 0;
    /// A picture with 64 bits a sample in a TIFF file, read likewise, see `ReadDeepTiff`.
    virtual QImage ReadDeepTiff(QIODevice& device) const = 0;
    /// A picture whose colours are a video's, by their codes in ITU-T H.273, as that video's
    /// pictures are shown.
    virtual QImage FromVideoColor(const QImage& image, int transfer, int primaries) const = 0;
    /// The media libraries as they are loaded.
    virtual std::vector<LibraryInUse> Libraries() const = 0;
};

/// The engine, which lives as long as the program. The first call loads it (a tenth of a second or
/// so); others that come meanwhile wait. Fails, then and ever after, when the library is missing or
/// something that it needs is.
Outcome<const VideoEngine*> LoadedVideoEngine();

}  // namespace lumirra
