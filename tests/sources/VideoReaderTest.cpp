#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <numeric>
#include <optional>
#include <random>
#include <vector>

#include "sources/VideoReader.h"

namespace lumirra {
namespace {

QString Media(const QString& name) {
    return QStringLiteral(LUMIRRA_MEDIA_DIR "/") + name;
}

QByteArray Run(const QString& program, const QString& arguments, const QString& last) {
    QProcess process;
    process.start(program, arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts) << last);
    EXPECT_TRUE(process.waitForFinished(120'000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << arguments.toStdString();
    return process.readAllStandardOutput();
}

/// Time stamps of all shown frames, the first at 0, by another program's full decode.
std::vector<double> FrameTimes(const QString& path) {
    const QByteArray out = Run(QStringLiteral("ffprobe"),
                               QStringLiteral("-v error -select_streams v:0 -show_entries "
                                              "frame=best_effort_timestamp_time -of csv=p=0"),
                               path);
    std::vector<double> times;
    for (const QByteArray& line : out.split('\n')) {
        bool number = false;
        const double time = line.split(',').first().trimmed().toDouble(&number);
        if (number) {
            times.push_back(time);
        }
    }
    const double start = times.empty() ? 0 : times.front();
    for (double& time : times) {
        time -= start;
    }
    return times;
}

/// The number that is drawn into the stored frame: eight blocks along the lower edge, 40 rows of
/// 180. `rotation` is how the picture was turned to be shown.
int NumberIn(const QImage& shown, int rotation = 0) {
    const QImage image = shown.transformed(QTransform().rotate(-rotation));
    const int y = image.height() - image.height() / 9;
    int number = 0;
    for (int block = 0; block < 8; ++block) {
        const QColor color = image.pixelColor((2 * block + 1) * image.width() / 16, y);
        number = 2 * number + (color.green() > 127 ? 1 : 0);
    }
    return number;
}

VideoReader Opened(const QString& path) {
    auto reader = VideoReader::Open(path);
    EXPECT_TRUE(reader) << path.toStdString();
    return *std::move(reader);
}

using CounterClip = testing::TestWithParam<const char*>;

// Every frame at its own time and in the middle of it, in every order of asking.
TEST_P(CounterClip, GivesTheFrameOfTheTime) {
    const QString path = Media(QLatin1String(GetParam()));
    const std::vector<double> times = FrameTimes(path);
    ASSERT_EQ(times.size(), 90U);
    VideoReader reader = Opened(path);
    const double duration = reader.Info().durationSeconds;
    const int rotation = reader.Info().rotationDegrees;
    std::vector<std::pair<double, int>> wanted;
    for (std::size_t i = 0; i < times.size(); ++i) {
        const double end = i + 1 < times.size() ? times[i + 1] : duration;
        wanted.emplace_back(times[i] / duration, static_cast<int>(i));
        wanted.emplace_back(static_cast<float>(times[i] / duration), static_cast<int>(i));
        wanted.emplace_back((times[i] + end) / 2 / duration, static_cast<int>(i));
    }
    wanted.emplace_back(1.0, 89);
    const auto check = [&](const char* order) {
        for (const auto& [position, number] : wanted) {
            const SourceImage got = reader.At(position);
            ASSERT_FALSE(got.problem) << got.problem->message.toStdString();
            ASSERT_EQ(NumberIn(got.image, rotation), number) << order << " " << position;
        }
    };
    check("ascending");
    std::reverse(wanted.begin(), wanted.end());
    check("descending");
    std::shuffle(wanted.begin(), wanted.end(), std::mt19937(7));
    wanted.resize(60);
    check("random");
    wanted.resize(6);
    for (const auto& [position, number] : wanted) {
        EXPECT_EQ(NumberIn(Opened(path).At(position).image, rotation), number) << position;
    }
}

INSTANTIATE_TEST_SUITE_P(Clips, CounterClip,
                         testing::Values("counter-30fps-bframes.mp4", "counter-2997.mov",
                                         "counter-vfr.mp4", "counter-rotated-90.mp4",
                                         "counter-with-sound.m4v", "counter-odd-size.mp4",
                                         "counter-qcif.3gp"));

}  // namespace
}  // namespace lumirra
