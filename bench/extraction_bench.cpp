// Extracts a frame every 0.1 s of a clip, at the clip's size: bench_extraction CLIP OUTDIR [full].
// "full" puts every adjustment, the cartoon and vignette effects and a caption on each frame.
#include <QDir>
#include <QGuiApplication>
#include <QString>
#include <chrono>
#include <cstdio>

#include "imaging/WorkingMemory.h"
#include "sources/Extraction.h"
#include "sources/VideoReader.h"

namespace {

void UseEverything(lumirra::EffectSettings& effects) {
    effects.brightness = 0.05F;
    effects.contrast = 1.2F;
    effects.saturation = 1.3F;
    effects.exposure = 0.2F;
    effects.gamma = 1.1F;
    effects.hue = 20;
    effects.cartoonOn = true;
    effects.vignetteOn = true;
    effects.text = QStringLiteral("Lumirra");
}

}  // namespace

int main(int argc, char** argv) {
    lumirra::KeepWorkingMemory();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 3) {
        std::fprintf(stderr, "usage: bench_extraction CLIP OUTDIR [full]\n");
        return 2;
    }
    lumirra::ExtractionJob job;
    job.videoPath = arguments.at(1);
    job.directory = arguments.at(2);
    QDir().mkpath(job.directory);
    const auto begin = std::chrono::steady_clock::now();
    {
        const auto video = lumirra::VideoReader::Open(job.videoPath);
        if (!video) {
            std::fprintf(stderr, "%s\n", qPrintable(video.failure().message));
            return 1;
        }
        job.settings.width = video->Info().shownWidth;
        job.settings.height = video->Info().shownHeight;
    }
    if (arguments.value(3) == QLatin1String("full")) {
        UseEverything(job.settings.effects);
    }
    const auto result = lumirra::RunExtraction(job, {}, {}, {});
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    for (const lumirra::Failure& problem : result.problems) {
        std::fprintf(stderr, "%s\n", qPrintable(problem.message));
    }
    std::printf("%lld frames in %.3f s\n", static_cast<long long>(result.framePaths.size()),
                time.count());
    return result.framePaths.isEmpty() ? 1 : 0;
}
