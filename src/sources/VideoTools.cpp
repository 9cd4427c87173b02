#include "sources/VideoTools.h"

#include "sources/SourceKinds.h"
#include "sources/StillReader.h"
#include "sources/VideoEngine.h"
#include "sources/VideoReader.h"

namespace lumirra::VideoTools {

QImage ImageAtPosition(const QString& path, double position) {
    return ReadImageAtPosition(path, position).image;
}

SourceImage ReadImageAtPosition(const QString& path, double position) {
    if (const auto kind = ProbeSource(path); !kind) {
        return {QImage(), kind.failure()};
    } else if (*kind != SourceKind::Video) {
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
    if (path.isEmpty() || IsPictureFile(path)) {
        return 0;
    }
    const auto engine = LoadedVideoEngine();
    return engine ? (*engine)->Duration(path) : 0;
}

DisplayTransform Display(const QString& path) {
    const auto engine = LoadedVideoEngine();
    return engine ? (*engine)->Display(path) : DisplayTransform{};
}

QString TimeLabelAtPosition(const QString& path, double position) {
    return TimeLabel(Duration(path) * position);
}

}  // namespace lumirra::VideoTools
