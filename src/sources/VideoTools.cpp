#include "sources/VideoTools.h"

#include <array>
#include <cmath>
#include <cstdint>

#include "sources/StillReader.h"
#include "sources/VideoReader.h"
#include "sources/video/MediaFile.h"
#include "sources/video/MediaTime.h"

namespace lumirra::VideoTools {

namespace {

// A picture by what is in the file, whatever its name.
bool HoldsPicture(const QString& path) {
    const auto file = MediaFile::Open(path);
    return file && file->IsPicture();
}

}  // namespace

QImage ImageAtPosition(const QString& path, double position) {
    return ReadImageAtPosition(path, position).image;
}

SourceImage ReadImageAtPosition(const QString& path, double position) {
    if (IsStillImage(path) || IsPicture(path) || HoldsPicture(path)) {
        return ReadStill(path);
    }
    auto reader = VideoReader::Open(path);
    if (!reader) {
        return {QImage(), reader.failure()};
    }
    VideoReader open = *std::move(reader);
    return open.At(position);
}

double Duration(const QString& path) {
    if (path.isEmpty() || IsStillImage(path)) {
        return 0;
    }
    auto opened = VideoStream::Open(path);
    if (!opened) {
        return 0;
    }
    VideoStream stream = *std::move(opened);
    if (stream.Format()->duration <= 0) {
        stream.Next();  // the time of the first frame matters only where frames have to be counted
    }
    return MediaDuration(stream);
}

QString TimeLabelAtPosition(const QString& path, double position) {
    return TimeLabel(Duration(path) * position);
}

}  // namespace lumirra::VideoTools
