// The way in to the library that is loaded for the first video: its only exported symbol.
#include "imaging/PictureFormat.h"
#include "imaging/Words.h"
#include "sources/VideoEngine.h"
#include "sources/video/DecodedVideo.h"
#include "sources/video/DeepTiff.h"
#include "sources/video/Ffmpeg.h"
#include "sources/video/Jpeg2000.h"
#include "sources/video/MediaFile.h"
#include "sources/video/MediaTime.h"
#include "sources/video/VideoFrameConverter.h"
#include "sources/video/WideColor.h"

namespace lumirra {

namespace {

LibraryInUse Library(const char* name, unsigned version, const char* licence) {
    // "GPL version 2 or later" or "LGPL version 2.1 or later", as the library was built
    const QString terms = QString::fromLatin1(licence);
    const QStringList words = terms.split(QLatin1Char(' '));
    const QString number = words.value(2);
    const QString spdx =
        QStringLiteral("%1-%2-or-later")
            .arg(words.value(0),
                 number.contains(QLatin1Char('.')) ? number : number + QStringLiteral(".0"));
    return {QLatin1String(name),
            Filled(QStringLiteral("%1.%2.%3"), AV_VERSION_MAJOR(version), AV_VERSION_MINOR(version),
                   AV_VERSION_MICRO(version)),
            terms.contains(QLatin1String("or later")) ? spdx : terms};
}

class FfmpegEngine final : public VideoEngine {
  public:
    Outcome<std::unique_ptr<OpenedVideo>> Open(const QString& path,
                                               const VideoReaderOptions& options) const override {
        return OpenVideo(path, options);
    }

    double Duration(const QString& path) const override try {
        auto opened = VideoStream::Open(path);
        if (!opened) {
            return 0;
        }
        VideoStream stream = *std::move(opened);
        if (stream.Format()->duration <= 0) {
            stream.Next();  // the first frame's time matters only where frames have to be counted
        }
        return MediaDuration(stream);
    } catch (const std::bad_alloc&) {
        return 0;
    }

    DisplayTransform Display(const QString& path) const override {
        const auto stream = VideoStream::Open(path);
        return stream ? DisplayOf(stream->Track(), nullptr) : DisplayTransform{};
    }

    std::optional<Failure> VideoProblem(const QString& path) const override {
        const auto stream = VideoStream::Open(path);
        return stream ? std::nullopt : std::optional(stream.failure());
    }

    bool HoldsPicture(const QString& path) const override try {
        const auto file = MediaFile::Open(path);
        return file && file->IsPicture();
    } catch (const std::bad_alloc&) {
        return false;
    }

    QImage ReadJpeg2000(QIODevice& device) const override { return lumirra::ReadJpeg2000(device); }

    QImage ReadDeepTiff(QIODevice& device) const override { return lumirra::ReadDeepTiff(device); }

    QImage FromVideoColor(const QImage& image, int transfer, int primaries) const override {
        VideoFrameColor color;
        color.transfer = static_cast<AVColorTransferCharacteristic>(transfer);
        color.primaries = static_cast<AVColorPrimaries>(primaries);
        return color.IsWide() ? ToStandardColor(Converted(image, QImage::Format_RGBA64),
                                                color.transfer, color.primaries)
                              : image;
    }

    std::vector<LibraryInUse> Libraries() const override {
        return {Library("libavformat", avformat_version(), avformat_license()),
                Library("libavcodec", avcodec_version(), avcodec_license()),
                Library("libavutil", avutil_version(), avutil_license()),
                Library("libswscale", swscale_version(), swscale_license()), TiffLibrary()};
    }
};

}  // namespace

}  // namespace lumirra

extern "C" __attribute__((visibility("default"))) const lumirra::VideoEngine* lumirraVideoEngine() {
    static const lumirra::FfmpegEngine engine;
    return &engine;
}
