#include "VideoClips.h"

#include <QColor>
#include <QProcess>
#include <QTransform>

namespace lumirra {

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

int NumberIn(const QImage& shown, int rotation) {
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

QString MadeClip::Make(const QString& name, const QString& arguments, int count,
                       const QString& before) {
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

QString MadeClip::Remux(const QString& from, const QString& name, const QString& arguments,
                        const QString& before) {
    Command(QStringLiteral("ffmpeg"),
            QStringLiteral("-v error -y %1 -i %2 %3").arg(before, from, arguments), Path(name));
    return Path(name);
}

void MadeClip::ExpectExact(const QString& path, int first, int count) {
    ExpectExact(path, first, count, FrameTimes(path));
}
void MadeClip::ExpectExact(const QString& path, int first, int count,
                           const std::vector<double>& times) {
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

QString MadeClip::Generate(const QString& name, const QString& source, const QString& arguments) {
    return Remux(source, name, arguments, QStringLiteral("-f lavfi"));
}

}  // namespace lumirra
