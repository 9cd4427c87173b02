#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QTemporaryDir>
#include <random>

#include "imaging/ImageFile.h"

namespace lumirra::ImageTools {
namespace {

/// Noise in every channel, with fully transparent and half transparent parts.
QImage NoisePicture(int width, int height) {
    std::mt19937 random(7);
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int value = static_cast<int>(random() & 0xFFFFFFU);
            const int alpha = x % 3 == 0 ? 255 : (x % 3 == 1 ? 130 : 0);
            image.setPixelColor(x, y,
                                QColor(value & 0xFF, value >> 8 & 0xFF, value >> 16 & 0xFF, alpha));
        }
    }
    return image;
}

QImage Read(const QString& path) {
    return QImageReader(path).read().convertToFormat(QImage::Format_RGBA8888);
}

class ImageFileTest : public testing::Test {
  protected:
    QString Path(const QString& name) const { return folder_.filePath(name); }
    QTemporaryDir folder_;
};

TEST_F(ImageFileTest, KeepsEveryChannelOfEveryPixel) {
    for (const QSize size : {QSize(1, 1), QSize(3, 2), QSize(67, 41)}) {
        const QImage image = NoisePicture(size.width(), size.height());
        ASSERT_TRUE(WritePng(image, Path(QStringLiteral("a.png"))));
        EXPECT_EQ(Read(Path(QStringLiteral("a.png"))), image);
    }
    // 8 bits with alpha, deflate, no interlace.
    QFile file(Path(QStringLiteral("a.png")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(33).mid(24, 5), QByteArray("\x08\x06\0\0\0", 5));
}

TEST_F(ImageFileTest, RowsOfForeignMemoryMayBePadded) {
    const QImage whole = NoisePicture(20, 9);
    const QImage part(whole.constBits(), 13, 9, whole.bytesPerLine(), QImage::Format_RGBA8888);
    ASSERT_TRUE(WritePng(part, Path(QStringLiteral("p.png"))));
    EXPECT_EQ(Read(Path(QStringLiteral("p.png"))), whole.copy(0, 0, 13, 9));
}

TEST_F(ImageFileTest, FailuresTellTheReasonAndLeaveNothing) {
    const QImage image = NoisePicture(300, 200);
    const auto missing = WritePng(image, Path(QStringLiteral("no/such/a.png")));
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.failure().kind, Failure::Kind::NotWritable);
    EXPECT_TRUE(missing.failure().message.contains(QStringLiteral("folder does not exist")));
    EXPECT_FALSE(WritePng(QImage(), Path(QStringLiteral("n.png"))));
    EXPECT_FALSE(WritePng(image, folder_.path()));
    EXPECT_TRUE(QDir(folder_.path()).isEmpty());
    // A pipe or device is never replaced by a file.
    const QString pipe = Path(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    EXPECT_FALSE(WritePng(image, pipe));
    EXPECT_FALSE(QFileInfo(pipe).isFile());
}

TEST_F(ImageFileTest, AFailedWriteLeavesTheOldFile) {
    const QString path = Path(QStringLiteral("a.png"));
    ASSERT_TRUE(WritePng(NoisePicture(5, 5), path));
    EXPECT_FALSE(WritePng(QImage(), path));
    EXPECT_EQ(Read(path).size(), QSize(5, 5));
    ASSERT_TRUE(WritePng(NoisePicture(9, 9), path));
    EXPECT_EQ(Read(path).size(), QSize(9, 9));
    EXPECT_EQ(QDir(folder_.path()).count(), 3U);  // ".", ".." and the file: no temporary left
}

}  // namespace
}  // namespace lumirra::ImageTools
