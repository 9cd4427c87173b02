// The way in to the library that is loaded for the first video: its only exported symbol.
#include "sources/VideoEngine.h"
#include "sources/video/DecodedVideo.h"
#include "sources/video/Jpeg2000.h"
#include "sources/video/MediaFile.h"
#include "sources/video/MediaTime.h"

namespace lumirra {

namespace {

class FfmpegEngine final : public VideoEngine {
  public:
    Outcome<std::unique_ptr<OpenedVideo>> Open(const QString& path,
                                               const VideoReaderOptions& options) const override {
        return OpenVideo(path, options);
    }

    double Duration(const QString& path) const override {
        auto opened = VideoStream::Open(path);
        if (!opened) {
            return 0;
        }
        VideoStream stream = *std::move(opened);
        if (stream.Format()->duration <= 0) {
            stream.Next();  // the first frame's time matters only where frames have to be counted
        }
        return MediaDuration(stream);
    }

    bool HoldsPicture(const QString& path) const override {
        const auto file = MediaFile::Open(path);
        return file && file->IsPicture();
    }

    QImage ReadJpeg2000(QIODevice& device) const override { return lumirra::ReadJpeg2000(device); }
};

}  // namespace

}  // namespace lumirra

extern "C" __attribute__((visibility("default"))) const lumirra::VideoEngine* lumirraVideoEngine() {
    static const lumirra::FfmpegEngine engine;
    return &engine;
}
