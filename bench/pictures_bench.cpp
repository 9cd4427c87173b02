// Files, scaling and captions. Run with --benchmark_min_time=0.5 on a quiet machine.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QTemporaryDir>
#include <cmath>

#include "imaging/CropScale.h"
#include "imaging/ImageFile.h"

namespace lumirra::ImageTools {
namespace {

/// Smooth shapes with a little noise, as a camera gives.
QImage Photo(int width, int height) {
    QImage image(width, height, QImage::Format_RGBA8888);
    std::uint32_t noise = 1;
    for (int y = 0; y < height; ++y) {
        std::uint8_t* p = image.scanLine(y);
        for (int x = 0; x < width; ++x, p += 4) {
            noise = noise * 1664525U + 1013904223U;
            const int n = static_cast<int>(noise >> 30);
            p[0] = static_cast<std::uint8_t>(120 + 100 * std::sin(x / 90.0) + n);
            p[1] = static_cast<std::uint8_t>(120 + 100 * std::cos(y / 70.0) + n);
            p[2] = static_cast<std::uint8_t>(120 + 100 * std::sin((x + y) / 110.0) + n);
            p[3] = 255;
        }
    }
    return image;
}

void WritePngFile(benchmark::State& state) {
    const QImage image = Photo(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const QTemporaryDir folder;
    for (auto _ : state) {
        if (!WritePng(image, folder.filePath(QStringLiteral("a.png")))) {
            state.SkipWithError("not written");
        }
    }
}
BENCHMARK(WritePngFile)->Args({720, 480})->Args({1920, 1080})->Unit(benchmark::kMillisecond);

void Scale(benchmark::State& state) {
    const QImage image = Photo(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(DrawScaled(image, static_cast<double>(state.range(2)),
                                            static_cast<double>(state.range(3))));
    }
}
BENCHMARK(Scale)
    ->Args({1920, 1080, 372, 209})
    ->Args({720, 480, 372, 248})
    ->Args({1920, 1080, 960, 540})
    ->Args({720, 480, 1920, 1080})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lumirra::ImageTools

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
