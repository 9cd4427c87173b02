#include "app/preview/PreviewSource.h"

#include "imaging/Render.h"
#include "imaging/files/FileName.h"
#include "sources/StillReader.h"

namespace lumirra {

PreviewSource::Stamp PreviewSource::StampOf(const QString& path) {
    const FileFacts file = FactsOf(path);
    return {path, file.isThere ? file.bytes : -1, file.changed};
}

void PreviewSource::Follow(const QString& path) {
    Stamp now = StampOf(path);
    if (now != stamp_) {
        stamp_ = std::move(now);
        reader_.reset();
        picture_.reset();
    }
}

NearImage PreviewSource::ReadVideo(const PreviewRequest& request, const std::stop_token& stop) {
    if (!reader_) {
        Outcome<VideoReader> opened = VideoReader::Open(stamp_.path, kScrubbing);
        if (!opened) {
            return {{QImage(), opened.failure()}, true};
        }
        reader_ = *std::move(opened);
    }
    const auto position = static_cast<double>(request.settings.position);
    return request.held ? reader_->Near(position, stop)
                        : NearImage{reader_->At(position, stop), true};
}

const SourceImage& PreviewSource::Picture(const PreviewRequest& request,
                                          const std::stop_token& stop) {
    const bool video = !request.videoPath.isEmpty();
    Follow(video ? request.videoPath : request.imagePath);
    const float position = video ? request.settings.position : 0;
    if (!picture_ || !exact_ || position != position_) {
        NearImage read = video ? ReadVideo(request, stop) : NearImage{ReadStill(stamp_.path), true};
        picture_ = std::move(read.picture);
        exact_ = read.exact && !stop.stop_requested();
        position_ = position;
    }
    return *picture_;
}

PreviewResult PreviewSource::Render(const PreviewRequest& request, int threads,
                                    const std::stop_token& stop) {
    const SourceImage& source = Picture(request, stop);
    const VideoInfo info = reader_ ? reader_->Info() : VideoInfo{};
    const auto position = static_cast<double>(request.settings.position);
    return {ImageTools::RenderPreviewImage(source.image, request.settings, threads),
            VideoTools::TimeLabel(info.durationSeconds * position),
            info.durationSeconds,
            info.framesPerSecond,
            source.problem,
            exact_};
}

}  // namespace lumirra
