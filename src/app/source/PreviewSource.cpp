#include "app/source/PreviewSource.h"

#include <QFileInfo>

#include "imaging/Render.h"
#include "sources/StillReader.h"

namespace lumirra {

PreviewSource::Stamp PreviewSource::StampOf(const QString& path) {
    const QFileInfo file(path);
    return {path, file.exists() ? file.size() : -1, file.lastModified()};
}

void PreviewSource::Follow(const QString& path) {
    Stamp now = StampOf(path);
    if (now != stamp_) {
        stamp_ = std::move(now);
        reader_.reset();
        picture_.reset();
    }
}

SourceImage PreviewSource::ReadVideo(float position) {
    if (!reader_) {
        Outcome<VideoReader> opened = VideoReader::Open(stamp_.path, kScrubbing);
        if (!opened) {
            return {QImage(), opened.failure()};
        }
        reader_ = *std::move(opened);
    }
    return reader_->At(static_cast<double>(position));
}

const SourceImage& PreviewSource::Picture(const PreviewRequest& request) {
    const bool video = !request.videoPath.isEmpty();
    Follow(video ? request.videoPath : request.imagePath);
    const float position = video ? request.settings.position : 0;
    if (!picture_ || position != position_) {
        picture_ = video ? ReadVideo(position) : ReadStill(stamp_.path);
        position_ = position;
    }
    return *picture_;
}

PreviewResult PreviewSource::Render(const PreviewRequest& request, int threads) {
    const SourceImage& source = Picture(request);
    const VideoInfo info = reader_ ? reader_->Info() : VideoInfo{};
    const auto position = static_cast<double>(request.settings.position);
    return {ImageTools::RenderPreviewImage(source.image, request.settings, threads),
            VideoTools::TimeLabel(info.durationSeconds * position), info.durationSeconds,
            info.framesPerSecond, source.problem};
}

}  // namespace lumirra
