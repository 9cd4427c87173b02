#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <random>
#include <vector>

#include "sources/VideoReader.h"

namespace lumirra {
namespace {

QString Media(const QString& name) {
    return QStringLiteral(LUMIRRA_MEDIA_DIR "/") + name;
}

QByteArray Command(const QString& program, const QString& arguments, const QString& last) {
    QProcess process;
    process.start(program, arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts) << last);
    EXPECT_TRUE(process.waitForFinished(120'000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << arguments.toStdString();
    return process.readAllStandardOutput();
}

/// Time stamps of all shown frames, the first at 0, by another program's full decode.
std::vector<double> FrameTimes(const QString& path) {
    const QByteArray out = Command(QStringLiteral("ffprobe"),
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
    if (!QFileInfo::exists(path)) {
        FAIL() << "the folder of sample clips is not here";
    }
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

constexpr int kWidth = 128;
constexpr int kHeight = 72;

/// Clips made on the spot.
class MadeClip : public testing::Test {
  protected:
    QString Path(const QString& name) const { return folder_.filePath(name); }

    /// `count` numbered frames at 25 a second, encoded by `arguments` (after the input).
    QString Make(const QString& name, const QString& arguments, int count = 60,
                 const QString& before = {}) {
        QProcess process;
        const QString input = QStringLiteral(
                                  "-v error -y %1 -f rawvideo -pix_fmt gray -r 25 -s "
                                  "%2x%3 -i - %4")
                                  .arg(before)
                                  .arg(kWidth)
                                  .arg(kHeight)
                                  .arg(arguments);
        process.start(QStringLiteral("ffmpeg"), input.split(QLatin1Char(' '), Qt::SkipEmptyParts)
                                                    << Path(name));
        for (int i = 0; i < count; ++i) {
            QByteArray frame(kWidth * kHeight, char(60));
            for (int y = kHeight - 16; y < kHeight; ++y) {
                for (int x = 0; x < kWidth; ++x) {
                    frame[y * kWidth + x] =
                        ((i >> (7 - x * 8 / kWidth)) & 1) != 0 ? char(255) : char(0);
                }
            }
            process.write(frame);
        }
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished(120'000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return Path(name);
    }

    QString Remux(const QString& from, const QString& name, const QString& arguments,
                  const QString& before = {}) {
        Command(QStringLiteral("ffmpeg"),
                QStringLiteral("-v error -y %1 -i %2 %3").arg(before, from, arguments), Path(name));
        return Path(name);
    }

    /// Asks for every frame at its own time and half way, up and down; `first` is the first
    /// frame's number.
    void ExpectExact(const QString& path, int first, int count) {
        ExpectExact(path, first, count, FrameTimes(path));
    }
    void ExpectExact(const QString& path, int first, int count, const std::vector<double>& times) {
        ASSERT_EQ(static_cast<int>(times.size()), count) << path.toStdString();
        VideoReader reader = Opened(path);
        const double duration = reader.Info().durationSeconds;
        for (int pass = 0; pass < 2; ++pass) {
            for (int step = 0; step < count; ++step) {
                const int i = pass == 0 ? step : count - 1 - step;
                const double time = times[static_cast<std::size_t>(i)];
                for (const double at : {time, time + 0.02}) {
                    const SourceImage got = reader.At(at / duration);
                    EXPECT_FALSE(got.problem) << path.toStdString() << at;
                    ASSERT_EQ(NumberIn(got.image), first + i) << path.toStdString() << " " << at;
                }
            }
        }
        EXPECT_EQ(NumberIn(reader.At(1).image), first + count - 1) << path.toStdString();
    }

    QTemporaryDir folder_;
};

TEST_F(MadeClip, FramesAreExactInEveryCodecAndContainer) {
    const QString gop = QStringLiteral("-pix_fmt yuv420p -g 20 ");
    ExpectExact(Make(QStringLiteral("h264.mkv"), gop + QStringLiteral("-c:v libx264 -bf 3")), 0,
                60);
    ExpectExact(Make(QStringLiteral("open.ts"),
                     gop + QStringLiteral("-c:v libx264 -bf 3 -x264-params open-gop=1")),
                0, 60);
    ExpectExact(Make(QStringLiteral("h265.mp4"),
                     gop + QStringLiteral("-c:v libx265 -x265-params log-level=none:open-gop=1")),
                0, 60);
    ExpectExact(Make(QStringLiteral("vp9.webm"),
                     gop + QStringLiteral("-c:v libvpx-vp9 -deadline realtime -cpu-used 8")),
                0, 60);
    // Not every frame of these has a stamp in the file, so the times are those of the making.
    std::vector<double> times(60);
    std::generate(times.begin(), times.end(), [i = 0]() mutable { return i++ / 25.0; });
    for (const char* made : {"mpeg4.avi -c:v mpeg4 -bf 2 -q:v 2", "raw.h264 -c:v libx264"}) {
        const QString text = QLatin1String(made);
        const qsizetype space = text.indexOf(QLatin1Char(' '));
        ExpectExact(Make(text.left(space), gop + text.mid(space)), 0, 60, times);
    }
}

TEST_F(MadeClip, TimesCountFromTheStartOfTheStream) {
    const QString plain = Make(QStringLiteral("plain.mp4"),
                               QStringLiteral("-c:v libx264 -pix_fmt yuv420p -g 30 -bf 3"));
    const QString copy = QStringLiteral("-c copy");
    const QString offset =
        Remux(plain, QStringLiteral("offset.mp4"), QStringLiteral("-c copy -output_ts_offset 5"));
    ExpectExact(offset, 0, 60);
    EXPECT_NEAR(VideoTools::Duration(offset), 2.4, 0.001);
    const QString matroska =
        Remux(plain, QStringLiteral("offset.mkv"), QStringLiteral("-c copy -output_ts_offset 5"));
    ExpectExact(matroska, 0, 60);
    EXPECT_NEAR(VideoTools::Duration(matroska), 2.4, 0.05);
    ExpectExact(Remux(plain, QStringLiteral("offset.ts"), copy), 0, 60);
    // An edit list hides the frames before the cut, which are needed for decoding only.
    ExpectExact(Remux(plain, QStringLiteral("cut.mp4"), copy, QStringLiteral("-ss 0.4")), 10, 50);
    // Sound that is longer than the film: the last frame stays.
    const QString sound = Remux(plain, QStringLiteral("sound.mp4"),
                                QStringLiteral("-f lavfi -i sine=d=4 -map 0 -map 1 -c:v copy"));
    ExpectExact(sound, 0, 60);
    EXPECT_NEAR(VideoTools::Duration(sound), 4, 0.05);
    const SourceImage end = Opened(sound).At(0.99);
    EXPECT_FALSE(end.problem);
    EXPECT_EQ(NumberIn(end.image), 59);
    ExpectExact(Make(QStringLiteral("one.mp4"), QStringLiteral("-c:v libx264 -pix_fmt yuv420p"), 1),
                0, 1);
}

TEST_F(MadeClip, AlphaIsKept) {
    Command(QStringLiteral("ffmpeg"),
            QStringLiteral("-v error -y -f lavfi -i color=c=red@0.5:s=64x48:d=0.2,format=rgba "
                           "-c:v qtrle -pix_fmt argb"),
            Path(QStringLiteral("alpha.mov")));
    const QColor color = Opened(Path(QStringLiteral("alpha.mov"))).At(0).image.pixelColor(9, 9);
    EXPECT_NEAR(color.alpha(), 127, 1);
    EXPECT_GE(color.red(), 253);
    EXPECT_LE(color.green(), 1);
}

TEST_F(MadeClip, DamageGivesWhiteWhereAFrameIsLost) {
    const QString whole =
        Make(QStringLiteral("whole.mkv"), QStringLiteral("-c:v mjpeg -q:v 3 -pix_fmt yuvj420p"));
    QFile file(whole);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QFile cut(Path(QStringLiteral("cut.mkv")));
    ASSERT_TRUE(cut.open(QIODevice::WriteOnly));
    cut.write(bytes.left(bytes.size() / 2));
    cut.close();
    VideoReader reader = Opened(cut.fileName());
    EXPECT_EQ(NumberIn(reader.At(0.2).image), 12);
    EXPECT_FALSE(reader.At(0.2).problem);
    const SourceImage lost = reader.At(0.9);
    EXPECT_TRUE(lost.problem);
    EXPECT_EQ(lost.image.size(), QSize(kWidth, kHeight));
    EXPECT_EQ(lost.image.pixelColor(5, 5), QColor(Qt::white));
    EXPECT_EQ(NumberIn(reader.At(0.2).image), 12) << "after the loss";
}

TEST_F(MadeClip, WhatIsNoVideoIsToldApart) {
    const auto write = [&](const QString& name, const QByteArray& bytes) {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return Path(name);
    };
    const QString good = Make(QStringLiteral("good.mp4"), QStringLiteral("-c:v mpeg4"), 3);
    Command(QStringLiteral("ffmpeg"), QStringLiteral("-v error -y -f lavfi -i sine=d=1"),
            Path(QStringLiteral("sound.m4a")));
    Command(QStringLiteral("mkfifo"), {}, Path(QStringLiteral("pipe.mp4")));
    Command(QStringLiteral("ffmpeg"),
            QStringLiteral("-v error -y -f lavfi -i testsrc=d=0.04:s=64x48"),
            Path(QStringLiteral("photo.jpg")));
    ASSERT_TRUE(
        QFile::rename(Path(QStringLiteral("photo.jpg")), Path(QStringLiteral("photo.mp4"))));
    const std::vector<std::pair<QString, const char*>> cases = {
        {Path(QStringLiteral("none.mp4")), "does not exist"},
        {Path(QString()), "folder"},
        {Path(QStringLiteral("pipe.mp4")), "ordinary file"},
        {QStringLiteral("/dev/zero"), "ordinary file"},
        {Path(QStringLiteral("sound.m4a")), "only sound"},
        {Path(QStringLiteral("photo.mp4")), "picture"},
        {write(QStringLiteral("empty.mov"), {}), "empty"},
        {write(QStringLiteral("text.mp4"), "just some text\n"), "not a video"},
        {write(QStringLiteral("list.mp4"), "ffconcat version 1.0\nfile '" + good.toUtf8() + "'\n"),
         "not a video"},
        {write(QStringLiteral("play.mp4"), "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" +
                                               good.toUtf8() + "\n#EXT-X-ENDLIST\n"),
         "not a video"},
    };
    for (const auto& [path, words] : cases) {
        const auto reader = VideoReader::Open(path);
        ASSERT_FALSE(reader) << path.toStdString();
        EXPECT_NE(reader.failure().message.indexOf(QLatin1String(words)), -1)
            << reader.failure().message.toStdString();
        EXPECT_EQ(VideoTools::TimeLabelAtPosition(path, 1), QStringLiteral("00:00:00.0"));
    }
    EXPECT_EQ(VideoTools::ReadImageAtPosition(Path(QStringLiteral("photo.mp4")), 0.5).image.size(),
              QSize(64, 48));
}

TEST(TimeLabel, TruncatesToTenths) {
    const std::vector<std::pair<double, const char*>> cases = {
        {62.685, "00:01:02.6"},  {3725, "01:02:05.0"},    {59.99, "00:00:59.9"},
        {3599.96, "00:59:59.9"}, {360000, "100:00:00.0"}, {0, "00:00:00.0"}};
    for (const auto& [seconds, text] : cases) {
        EXPECT_EQ(VideoTools::TimeLabel(seconds), QLatin1String(text));
    }
}

}  // namespace
}  // namespace lumirra
