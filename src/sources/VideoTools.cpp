#include "sources/VideoTools.h"

#include "sources/StillReader.h"
#include "sources/VideoEngine.h"
#include "sources/VideoReader.h"

namespace lumirra::VideoTools {

namespace {

// A picture by what is in the file, whatever its name.
bool HoldsPicture(const QString& path) {
    const auto engine = LoadedVideoEngine();
    return engine && (*engine)->HoldsPicture(path);
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
    const auto engine = LoadedVideoEngine();
    return engine ? (*engine)->Duration(path) : 0;
}

QString TimeLabelAtPosition(const QString& path, double position) {
    return TimeLabel(Duration(path) * position);
}

}  // namespace lumirra::VideoTools
