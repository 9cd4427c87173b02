#include <gtest/gtest.h>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <cmath>

#include "sources/VideoReader.h"
#include "views/panel/Film.h"

namespace lumirra {
namespace {

/// The first picture that the player brings, as it shows it; null and why when none comes.
std::pair<QImage, QString> PlayedPicture(const QString& path) {
    QEventLoop loop;
    std::pair<QImage, QString> got{{}, QStringLiteral("no picture in time")};
    FilmReports reports;
    reports.newPicture = [&] { loop.quit(); };
    reports.ended = [&] { loop.quit(); };
    reports.failed = [&](const QString& reason) {
        got.second = reason;
        loop.quit();
    };
    const auto player = LoadedFilmPlayer();
    EXPECT_TRUE(player);
    const auto film = (*player)->Play(path, VideoTools::Display(path), std::move(reports));
    QTimer::singleShot(20'000, &loop, &QEventLoop::quit);
    loop.exec();
    film->Draw(film->PictureSize(), got.first);
    return got;
}

/// Mean difference of the pictures, reduced to a few patches of grey.
double Difference(const QImage& a, const QImage& b) {
    constexpr int kPatches = 12;
    const auto patches = [](const QImage& image) {
        return image.scaled(kPatches, kPatches, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_Grayscale8);
    };
    const QImage left = patches(a);
    const QImage right = patches(b);
    double sum = 0;
    for (int y = 0; y < kPatches; ++y) {
        for (int x = 0; x < kPatches; ++x) {
            sum += std::abs(left.constScanLine(y)[x] - right.constScanLine(y)[x]);
        }
    }
    return sum / (kPatches * kPatches);
}

/// Player and still picture have the same shape, and of the eight ways to hold a picture the
/// player's own is the one that resembles the still most.
void ExpectAgreement(const QString& path) {
    auto opened = VideoReader::Open(path);
    ASSERT_TRUE(opened) << path.toStdString();
    VideoReader reader = *std::move(opened);
    const QImage still = reader.At(0).image;
    const auto [played, problem] = PlayedPicture(path);
    ASSERT_FALSE(played.isNull()) << path.toStdString() << ": " << problem.toStdString();
    EXPECT_EQ(played.size(), still.size()) << path.toStdString();
    const double difference = Difference(played, still);
    for (int other = 1; other < 8; ++other) {
        const DisplayTransform turn{.flipped = other >= 4, .quarterTurns = other % 4};
        EXPECT_LT(difference, Difference(turn.Upright(played), still))
            << path.toStdString() << " turned by " << other;
    }
}

class PlayerAgrees : public testing::Test {
  protected:
    /// A grey clip with corners in white, black and silver; `options` are split at spaces.
    QString Clip(const QString& name, const QString& options) {
        const QString path = folder_.filePath(name);
        const QString picture = QStringLiteral(
            "color=gray:s=160x90:r=10:d=1,drawbox=0:0:80:30:white:fill,"
            "drawbox=80:60:80:30:black:fill,drawbox=0:60:40:30:silver:fill");
        QProcess process;
        process.start(QStringLiteral("ffmpeg"),
                      QStringLiteral("-v error -f lavfi -i %1 -pix_fmt yuv420p %2 -y")
                              .arg(picture, options)
                              .split(QLatin1Char(' '))
                          << path);
        EXPECT_TRUE(process.waitForFinished(60'000) && process.exitCode() == 0)
            << process.readAllStandardError().toStdString();
        return path;
    }

    /// The clip with a turn written into its track header.
    QString Turned(const QString& clip, const std::array<int, 4>& matrix) {
        QFile file(clip);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QByteArray bytes = file.readAll();
        constexpr qsizetype kMatrixInHeader = 44;  // after the name and 40 bytes of other fields
        char* at = bytes.data() + bytes.indexOf("tkhd") + kMatrixInHeader;
        constexpr std::array kPlaces{0, 4, 12, 16};  // a, b, c, d of 3 x 3 numbers
        for (std::size_t i = 0; i < matrix.size(); ++i) {
            qToBigEndian(matrix.at(i) * 65536, at + kPlaces.at(i));
        }
        QFile turned(folder_.filePath(QStringLiteral("turned-%1%2%3%4.mp4")
                                          .arg(matrix[0])
                                          .arg(matrix[1])
                                          .arg(matrix[2])
                                          .arg(matrix[3])));
        EXPECT_TRUE(turned.open(QIODevice::WriteOnly) && turned.write(bytes) == bytes.size());
        return turned.fileName();
    }

    QTemporaryDir folder_;
};

TEST_F(PlayerAgrees, InTurnsFlipsAndThePixelsShape) {
    const QString clip = Clip(QStringLiteral("clip.mp4"), QStringLiteral("-c:v libx264"));
    constexpr std::array<std::array<int, 4>, 8> kTurns{{{1, 0, 0, 1},
                                                        {0, 1, -1, 0},
                                                        {-1, 0, 0, -1},
                                                        {0, -1, 1, 0},
                                                        {-1, 0, 0, 1},
                                                        {1, 0, 0, -1},
                                                        {0, 1, 1, 0},
                                                        {0, -1, -1, 0}}};
    for (const auto& matrix : kTurns) {
        ExpectAgreement(Turned(clip, matrix));
    }
    const auto shaped = [&](const char* name, const char* options) {
        return Clip(QLatin1String(name), QLatin1String(options));
    };
    const QString wide = shaped("wide.mp4", "-vf setsar=4/3 -c:v libx264");
    ExpectAgreement(wide);
    ExpectAgreement(Turned(wide, {0, 1, -1, 0}));
    ExpectAgreement(shaped("narrow.webm", "-vf setsar=2/3 -c:v libvpx"));
    ExpectAgreement(shaped("plain.avi", "-vf setsar=16/9 -c:v mpeg4"));
}

TEST_F(PlayerAgrees, OnEveryKindOfClip) {
    const QStringList kinds = {QStringLiteral("*.mp4"), QStringLiteral("*.m*v"),
                               QStringLiteral("*.3gp"), QStringLiteral("*.webm")};
    const QDir made(QStringLiteral(LUMIRRA_MEDIA_DIR));
    ASSERT_EQ(made.entryList(kinds).size(), 15);
    // Clips that lie beside the checkout are tried too.
    const QDir beside(QStringLiteral(LUMIRRA_SOURCE_DIR "/../shared/media"));
    for (const QDir& media : {made, beside}) {
        for (const QString& name : media.entryList(kinds)) {
            if (!name.startsWith(QLatin1String("bad-"))) {
                ExpectAgreement(media.filePath(name));
            }
        }
    }
}

}  // namespace
}  // namespace lumirra
