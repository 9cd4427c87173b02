// The picture operations on one 1920x1080 picture. The argument is the number of threads.
#include <benchmark/benchmark.h>

#include <cmath>

#include "imaging/Effects.h"
#include "imaging/Render.h"
#include "imaging/WorkingMemory.h"

namespace {

using lumirra::EffectSettings;
namespace ImageTools = lumirra::ImageTools;

/// Soft waves with fine noise on them: edges of every strength, no flat areas.
QImage Picture(int alpha) {
    QImage image(1920, 1080, QImage::Format_RGBA8888);
    std::uint32_t noise = 1;
    for (int y = 0; y < image.height(); ++y) {
        uchar* pixel = image.scanLine(y);
        for (int x = 0; x < image.width(); ++x, pixel += 4) {
            noise = noise * 1664525U + 1013904223U;
            for (int channel = 0; channel < 3; ++channel) {
                const double wave = std::sin(x * 0.011 * (channel + 1)) * std::cos(y * 0.017);
                pixel[channel] =
                    static_cast<uchar>(120 + 100 * wave + (noise >> (8 * channel + 3)) % 16);
            }
            pixel[3] = static_cast<uchar>(alpha);
        }
    }
    return image;
}

EffectSettings AllAdjustments() {
    EffectSettings settings;
    settings.brightness = 0.05F;
    settings.contrast = 1.2F;
    settings.saturation = 1.3F;
    settings.exposure = 0.2F;
    settings.gamma = 0.8F;
    settings.hue = 20;
    return settings;
}

EffectSettings Vignette(EffectSettings settings) {
    settings.vignetteOn = true;
    return settings;
}

EffectSettings Look(const char* name) {
    EffectSettings settings;
    settings.colorEffectOn = true;
    settings.colorEffectName = QLatin1String(name);
    return settings;
}

EffectSettings Cartoon(float blur) {
    EffectSettings settings;
    settings.cartoonOn = true;
    settings.cartoonBlur = blur;
    return settings;
}

EffectSettings Sketch() {
    EffectSettings settings;
    settings.sketchOn = true;
    return settings;
}

EffectSettings Everything() {
    EffectSettings settings = Vignette(AllAdjustments());
    settings.colorEffectOn = true;
    settings.colorEffectName = QStringLiteral("Chrome");
    settings.cartoonOn = true;
    return settings;
}

void Chain(benchmark::State& state, const EffectSettings& settings, int alpha) {
    const QImage image = Picture(alpha);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            ImageTools::ApplyEffectChain(image, settings, static_cast<int>(state.range(0))));
    }
}

void OnePosterize(benchmark::State& state) {
    const QImage image = Picture(255);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ImageTools::Posterize(image, 8));
    }
}
BENCHMARK(OnePosterize)->Unit(benchmark::kMillisecond);

const bool registered = [] {
    const auto chain = [](const char* name, const EffectSettings& settings, int alpha = 255) {
        benchmark::RegisterBenchmark(name, Chain, settings, alpha)
            ->Arg(1)
            ->Arg(2)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    };
    EffectSettings gamma;
    gamma.gamma = 0.8F;
    chain("Gamma", gamma);
    chain("AllAdjustments", AllAdjustments());
    chain("AllAdjustmentsVignette", Vignette(AllAdjustments()));
    chain("Vignette", Vignette({}));
    chain("Look", Look("Chrome"));
    chain("Cartoon/blur2", Cartoon(2));
    chain("Cartoon/blur2/transparent", Cartoon(2), 128);
    chain("Cartoon/blur0", Cartoon(0));
    chain("Cartoon/blur10", Cartoon(10));
    chain("Sketch", Sketch());
    chain("Everything", Everything());
    return true;
}();

}  // namespace

int main(int argc, char** argv) {
    lumirra::KeepWorkingMemory();  // as the programs do
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
