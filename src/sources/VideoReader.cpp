#include "sources/VideoReader.h"

#include "sources/VideoEngine.h"

namespace lumirra {

Outcome<VideoReader> VideoReader::Open(const QString& path, const VideoReaderOptions& options) {
    const auto engine = LoadedVideoEngine();
    if (!engine) {
        return engine.failure();
    }
    auto video = (*engine)->Open(path, options);
    if (!video) {
        return video.failure();
    }
    return VideoReader(*std::move(video));
}

VideoReader::VideoReader(std::unique_ptr<OpenedVideo> video) : video_(std::move(video)) {}
VideoReader::VideoReader(VideoReader&&) noexcept = default;
VideoReader& VideoReader::operator=(VideoReader&&) noexcept = default;
VideoReader::~VideoReader() = default;

const VideoInfo& VideoReader::Info() const {
    return video_->Info();
}

SourceImage VideoReader::At(double position, const std::stop_token& stop) {
    return video_->At(position, stop);
}

NearImage VideoReader::Near(double position, const std::stop_token& stop) {
    return video_->Near(position, stop);
}

}  // namespace lumirra
