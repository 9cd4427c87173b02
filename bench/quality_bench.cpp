// bench_quality MEDIA_FOLDER: bytes and looks of the sample clips at qualities 90 and 100 beside
// the reference's figures. `of` is the share of the reference's bytes.
#include <QCoreApplication>
#include <QTemporaryDir>
#include <cstdio>

#include "output/GifDecode.h"
#include "output/GifQuality.h"
#include "output/GifWriter.h"

namespace {

using lumirra::test::SampleClip;

void PrintReference(const char* clip, int quality, const SampleClip::Figures& figures) {
    std::printf(
        "%-18s %3d reference %9.0f              psnrb %5.2f ssim %.4f ssimb %.4f flick %.3f\n",
        clip, quality, figures.bytes, figures.psnrb, figures.ssim, figures.ssimb, figures.flick);
}

bool Measure(const SampleClip& clip, const QStringList& frames, const QString& destination,
             int quality) {
    const SampleClip::Figures& reference = quality == 90 ? clip.usual : clip.best;
    lumirra::GifRequest request;
    request.framePaths = frames;
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
    PrintReference(clip.name, quality, reference);
    const auto bytes = static_cast<double>(result->bytes);
    std::printf(
        "%-18s %3d lumirra   %9.0f of %5.1f %% psnrb %5.2f ssim %.4f ssimb %.4f flick %.3f\n",
        clip.name, quality, bytes, 100 * bytes / reference.bytes, made.psnrb, made.ssim, made.ssimb,
        made.flick);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_quality MEDIA_FOLDER\n");
        return 2;
    }
    for (const SampleClip& clip : lumirra::test::SampleClips()) {
        const QTemporaryDir folder;
        const QStringList frames =
            lumirra::test::ExtractFrames(clip, QCoreApplication::arguments().at(1), folder.path());
        for (const int quality : {90, 100}) {
            if (!Measure(clip, frames, folder.filePath(QStringLiteral("out.gif")), quality)) {
                return 1;
            }
        }
    }
    return 0;
}
