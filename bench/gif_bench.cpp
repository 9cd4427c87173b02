// bench_gif OUT.gif [-q N] [-t threads] FRAME.png...: encodes once and prints time, memory and
// bytes.
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
        std::fprintf(stderr, "usage: bench_gif OUT.gif [-q N] [-t threads] FRAME.png...\n");
        return 2;
    }
    request.destination = arguments.takeFirst();
    while (arguments.size() > 2 && arguments.front().startsWith(QLatin1Char('-'))) {
        const QString option = arguments.takeFirst();
        const int value = arguments.takeFirst().toInt();
        (option == QStringLiteral("-q") ? request.quality : request.threads) = value;
    }
    request.framePaths = arguments;
    const auto start = std::chrono::steady_clock::now();
    const auto result = lumirra::WriteGif(request, {}, {});
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    if (!result) {
        std::fprintf(stderr, "%s\n", qPrintable(result.failure().message));
        return 1;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%d images, %d x %d, %lld bytes, wall %.0f ms, user %.0f ms, peak %ld KB\n",
                result->frames, result->width, result->height, result->bytes, time.count(),
                static_cast<double>(usage.ru_utime.tv_sec) * 1e3 +
                    static_cast<double>(usage.ru_utime.tv_usec) / 1e3,
                usage.ru_maxrss);
    return 0;
}
