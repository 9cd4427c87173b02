// bench_quality FRAME.png...: bytes and looks of the GIF of these frames over the quality scale.
#include <QCoreApplication>
#include <QTemporaryDir>
#include <cstdio>

#include "output/GifDecode.h"
#include "output/GifQuality.h"
#include "output/GifWriter.h"

namespace {

bool Measure(const QStringList& frames, const QString& destination, double quality) {
    lumirra::GifRequest request;
    request.frames = lumirra::FramesAt(frames);
    request.destination = destination;
    request.quality = quality;
    const auto result = lumirra::WriteGif(request, {}, {});
    if (!result) {
        std::fprintf(stderr, "%s\n", qPrintable(result.failure().message));
        return false;
    }
    std::vector<QImage> images;
    for (const auto& image : lumirra::test::ParseGifFile(destination).images) {
        images.push_back(image.canvas);
    }
    const auto made = lumirra::test::CompareImages(images, frames);
    std::printf("%3.0f %10lld bytes  psnrb %5.2f  ssim %.4f  ssimb %.4f  flick %.3f\n", quality,
                result->bytes, made.psnrb, made.ssim, made.ssimb, made.flick);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList frames = QCoreApplication::arguments().mid(1);
    if (frames.isEmpty()) {
        std::fprintf(stderr, "usage: bench_quality FRAME.png...\n");
        return 2;
    }
    const QTemporaryDir folder;
    for (const double quality : {40, 60, 75, 90, 95, 100}) {
        if (!Measure(frames, folder.filePath(QStringLiteral("out.gif")), quality)) {
            return 1;
        }
    }
    return 0;
}
