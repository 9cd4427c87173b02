#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>
#include <random>

#include "imaging/ImageFile.h"

namespace lumirra::ImageTools {
namespace {

/// Noise in every channel, with fully transparent and half transparent parts.
QImage NoisePicture(int width, int height, int colorMask = 0xFF) {
    std::mt19937 random(7);
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int value = static_cast<int>(random() & 0xFFFFFFU);
            const int alpha = x % 3 == 0 ? 255 : (x % 3 == 1 ? 130 : 0);
            image.setPixelColor(
                x, y,
                QColor(value & colorMask, value >> 8 & colorMask, value >> 16 & colorMask, alpha));
        }
    }
    return image;
}

QImage Read(const QString& path) {
    return QImageReader(path).read().convertToFormat(QImage::Format_RGBA8888);
}

/// Decodes with ffmpeg; null when it complains or is missing.
QImage ReadByFfmpeg(const QString& path, const QString& out) {
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"),
                 {QStringLiteral("-v"), QStringLiteral("warning"), QStringLiteral("-y"),
                  QStringLiteral("-i"), path, QStringLiteral("-frames:v"), QStringLiteral("1"),
                  QStringLiteral("-update"), QStringLiteral("1"), out});
    ffmpeg.waitForFinished();
    const QByteArray complaint = ffmpeg.readAllStandardError();
    EXPECT_EQ(complaint, QByteArray());
    return complaint.isEmpty() ? Read(out) : QImage();
}

class ImageFileTest : public testing::Test {
  protected:
    QString Path(const QString& name) const { return folder_.filePath(name); }
    QTemporaryDir folder_;
};

TEST_F(ImageFileTest, PngAndTiffKeepEveryChannelOfEveryPixel) {
    for (const QSize size : {QSize(1, 1), QSize(3, 2), QSize(67, 41)}) {
        const QImage image = NoisePicture(size.width(), size.height());
        ASSERT_TRUE(SaveImage(image, Path(QStringLiteral("a.png")), ImageFileFormat::Png, 1));
        EXPECT_EQ(Read(Path(QStringLiteral("a.png"))), image);
        ASSERT_TRUE(SaveImage(image, Path(QStringLiteral("a.tif")), ImageFileFormat::Tiff, 1));
        EXPECT_EQ(ReadByFfmpeg(Path(QStringLiteral("a.tif")), Path(QStringLiteral("b.png"))),
                  image);
    }
    // 8 bits with alpha, deflate, no interlace.
    QFile file(Path(QStringLiteral("a.png")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(33).mid(24, 5), QByteArray("\x08\x06\0\0\0", 5));
}

TEST_F(ImageFileTest, RowsOfForeignMemoryMayBePadded) {
    const QImage whole = NoisePicture(20, 9);
    const QImage part(whole.constBits(), 13, 9, whole.bytesPerLine(), QImage::Format_RGBA8888);
    ASSERT_TRUE(SaveImage(part, Path(QStringLiteral("p.png")), ImageFileFormat::Png, 1));
    EXPECT_EQ(Read(Path(QStringLiteral("p.png"))), whole.copy(0, 0, 13, 9));
}

TEST_F(ImageFileTest, JpegFollowsTheFactorAndBmpIsExactOnWhite) {
    QImage image = NoisePicture(64, 64);
    ASSERT_TRUE(SaveImage(image, Path(QStringLiteral("lo.jpg")), ImageFileFormat::Jpeg, 0.2));
    ASSERT_TRUE(SaveImage(image, Path(QStringLiteral("hi.jpg")), ImageFileFormat::Jpeg, 1.0));
    EXPECT_LT(QFileInfo(Path(QStringLiteral("lo.jpg"))).size() * 2,
              QFileInfo(Path(QStringLiteral("hi.jpg"))).size());
    ASSERT_TRUE(SaveImage(image, Path(QStringLiteral("a.bmp")), ImageFileFormat::Bmp, 1));
    const QImage bmp = Read(Path(QStringLiteral("a.bmp")));
    EXPECT_EQ(bmp.pixel(0, 5), image.pixel(0, 5));
    EXPECT_EQ(bmp.pixelColor(2, 5), QColor(Qt::white));
}

TEST_F(ImageFileTest, GifOfFewColoursIsExactInForeignDecoders) {
    // 64 colours; long enough to run through the code table several times and to end at every
    // width of the last code.
    for (const QSize size : {QSize(1, 1), QSize(2, 1), QSize(255, 1), QSize(257, 1), QSize(771, 1),
                             QSize(1800, 1), QSize(301, 211)}) {
        QImage image = NoisePicture(size.width(), size.height(), 0xC0);
        for (int x = 1; x < image.width(); x += 3) {
            for (int y = 0; y < image.height(); ++y) {
                image.setPixelColor(x, y, QColor::fromRgba(image.pixel(x, y) | 0xFF000000U));
            }
        }
        const QString path = Path(QStringLiteral("a.gif"));
        ASSERT_TRUE(SaveImage(image, path, ImageFileFormat::Gif, 1));
        const QImage byToolkit = Read(path);
        const QImage byFfmpeg = ReadByFfmpeg(path, Path(QStringLiteral("b.png")));
        for (const QImage& read : {byToolkit, byFfmpeg}) {
            ASSERT_EQ(read.size(), image.size());
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QRgb wanted = image.pixel(x, y);
                    ASSERT_EQ(qAlpha(read.pixel(x, y)), qAlpha(wanted)) << x << ' ' << y;
                    ASSERT_TRUE(qAlpha(wanted) == 0 || read.pixel(x, y) == wanted);
                }
            }
        }
    }
}

TEST_F(ImageFileTest, GifOfManyColoursStaysCloseOnAverage) {
    QImage image(256, 256, QImage::Format_RGBA8888);
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) {
            image.setPixelColor(x, y, QColor(x, y, (x + y) / 2));
        }
    }
    ASSERT_TRUE(SaveImage(image, Path(QStringLiteral("a.gif")), ImageFileFormat::Gif, 1));
    const QImage read = ReadByFfmpeg(Path(QStringLiteral("a.gif")), Path(QStringLiteral("b.png")));
    ASSERT_EQ(read.size(), image.size());
    // Diffused errors cancel: means of 16 x 16 blocks agree although single pixels do not.
    for (int block = 0; block < 256; ++block) {
        double sum[3] = {};
        for (int i = 0; i < 256; ++i) {
            const int x = block % 16 * 16 + i % 16;
            const int y = block / 16 * 16 + i / 16;
            const QColor a = image.pixelColor(x, y);
            const QColor b = read.pixelColor(x, y);
            sum[0] += a.red() - b.red();
            sum[1] += a.green() - b.green();
            sum[2] += a.blue() - b.blue();
        }
        for (const double difference : sum) {
            // Colours at the rim of the cube lie outside all palette means: no mix reaches them.
            const bool rim = block < 16 || block >= 240 || block % 16 == 0 || block % 16 == 15;
            EXPECT_LT(std::abs(difference) / 256, rim ? 8 : 2) << block;
        }
    }
}

TEST_F(ImageFileTest, FailuresTellTheReasonAndLeaveNothing) {
    const QImage image = NoisePicture(300, 200);
    const auto missing =
        WriteImage(image, Path(QStringLiteral("no/such/a.png")), ImageFileFormat::Png, 1);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.failure().kind, Failure::Kind::NotWritable);
    EXPECT_TRUE(missing.failure().message.contains(QStringLiteral("folder does not exist")));
    EXPECT_FALSE(SaveImage(QImage(), Path(QStringLiteral("n.png")), ImageFileFormat::Png, 1));
    EXPECT_FALSE(SaveImage(image, Path(QStringLiteral("n.x")), static_cast<ImageFileFormat>(5), 1));
    EXPECT_FALSE(SaveImage(image, folder_.path(), ImageFileFormat::Png, 1));
    EXPECT_TRUE(QDir(folder_.path()).isEmpty());
    // A pipe or device is never replaced by a file.
    const QString pipe = Path(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    EXPECT_FALSE(SaveImage(image, pipe, ImageFileFormat::Png, 1));
    EXPECT_FALSE(QFileInfo(pipe).isFile());
}

TEST_F(ImageFileTest, AFailedWriteLeavesTheOldFile) {
    const QImage old = NoisePicture(5, 5);
    const QString path = Path(QStringLiteral("a.gif"));
    ASSERT_TRUE(SaveImage(old, path, ImageFileFormat::Gif, 1));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    const QImage tooWide = QImage(65536, 1, QImage::Format_RGBA8888);
    const auto outcome = WriteImage(tooWide, path, ImageFileFormat::Gif, 1);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.failure().kind, Failure::Kind::Unsupported);
    file.seek(0);
    EXPECT_EQ(file.readAll(), before);
    ASSERT_TRUE(SaveImage(NoisePicture(9, 9), path, ImageFileFormat::Gif, 1));
    EXPECT_EQ(Read(path).size(), QSize(9, 9));
    EXPECT_EQ(QDir(folder_.path()).count(), 3U);  // ".", ".." and the file: no temporary left
}

}  // namespace
}  // namespace lumirra::ImageTools
