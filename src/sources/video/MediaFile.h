#pragma once

#include <QString>
#include <memory>

#include "imaging/Outcome.h"
#include "sources/video/Ffmpeg.h"

namespace lumirra {

/// "NAME TAIL" about the file, as a failure.
Failure FileFailure(Failure::Kind kind, const QString& path, const QString& tail);
Failure NoMemoryFor(const QString& path);

/// A media file opened for reading. Only the file itself is read: formats that name other files or
/// addresses (play lists, descriptions of network sessions) are refused, and so is everything
/// that is not a regular file, without waiting on it.
class MediaFile {
  public:
    /// Finds the container; streams are not looked into yet.
    static Outcome<MediaFile> Open(const QString& path);

    MediaFile(MediaFile&&) noexcept;
    MediaFile& operator=(MediaFile&&) noexcept;
    ~MediaFile();

    AVFormatContext* Format() const { return format_.get(); }
    const QString& Path() const { return path_; }
    /// The content is a single still picture.
    bool IsPicture() const;
    /// Reads as much as is needed to know the streams.
    bool FindStreams();

  private:
    struct FileBytes;
    MediaFile();

    QString path_;
    std::unique_ptr<FileBytes> bytes_;  // outlives the two that read from it
    FfmpegPtr<AVIOContext> io_;
    FfmpegPtr<AVFormatContext> format_;
};

}  // namespace lumirra
