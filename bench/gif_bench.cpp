// bench_gif OUT.gif [-q N] [-t threads] [-m max bytes] [-e 1] FRAME.png...: encodes (with -e 1:
// only estimates) and prints time, memory and bytes.
#include <sys/resource.h>

#include <QCoreApplication>
#include <chrono>
#include <cstdio>

#include "imaging/WorkingMemory.h"
#include "output/GifWriter.h"

int main(int argc, char** argv) {
    lumirra::KeepWorkingMemory();
    const QCoreApplication application(argc, argv);
    lumirra::GifRequest request;
    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() < 2) {
        std::fprintf(stderr,
                     "usage: bench_gif OUT.gif [-q N] [-t threads] [-m max] [-e 1] FRAME.png...\n");
        return 2;
    }
    request.destination = arguments.takeFirst();
    bool estimateOnly = false;
    while (arguments.size() > 2 && arguments.front().startsWith(QLatin1Char('-'))) {
        const QString option = arguments.takeFirst();
        const double value = arguments.takeFirst().toDouble();
        if (option == QStringLiteral("-q")) {
            request.quality = value;
        } else if (option == QStringLiteral("-m")) {
            request.maxBytes = static_cast<long long>(value);
        } else if (option == QStringLiteral("-e")) {
            estimateOnly = value != 0;
        } else {
            request.threads = static_cast<int>(value);
        }
    }
    request.frames = lumirra::FramesAt(arguments);
    const auto start = std::chrono::steady_clock::now();
    if (estimateOnly) {
        const auto estimate = lumirra::EstimateGif(request, {});
        const std::chrono::duration<double, std::milli> time =
            std::chrono::steady_clock::now() - start;
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("about %lld bytes, wall %.0f ms, user %.0f ms\n",
                    estimate ? estimate->bytes : -1, time.count(),
                    static_cast<double>(usage.ru_utime.tv_sec) * 1e3 +
                        static_cast<double>(usage.ru_utime.tv_usec) / 1e3);
        return 0;
    }
    const auto result = lumirra::WriteGif(request, {}, {});
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    if (!result) {
        std::fprintf(stderr, "%s\n", qPrintable(result.failure().message));
        return 1;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf(
        "%d images, %d x %d, %lld bytes, quality %.2f, wall %.0f ms, user %.0f ms, peak %ld KB\n",
        result->frames, result->width, result->height, result->bytes, result->quality, time.count(),
        static_cast<double>(usage.ru_utime.tv_sec) * 1e3 +
            static_cast<double>(usage.ru_utime.tv_usec) / 1e3,
        usage.ru_maxrss);
    return 0;
}
