#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QColorSpace>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTransform>
#include <QtEndian>
#include <array>
#include <bit>
#include <cmath>
#include <tuple>
#include <vector>

#include "sources/StillReader.h"

namespace lumirra {
namespace {

/// A picture without symmetry: every turn and mirror image of it differs.
QImage Pattern(int width, int height) {
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixelColor(x, y,
                                QColor(40 + x * 150 / width, 30 + y * 180 / height,
                                       200 - x * y * 150 / (width * height)));
        }
    }
    return image;
}

double MeanDifference(const QImage& a, const QImage& b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) +
                   std::abs(qBlue(p) - qBlue(q));
        }
    }
    return sum / (3.0 * a.width() * a.height());
}

QByteArray Bytes(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

template <typename Number>
QByteArray Little(Number value) {
    value = qToLittleEndian(value);
    return QByteArray(reinterpret_cast<const char*>(&value), sizeof(value));
}

struct TiffPage {
    quint32 width;
    quint32 height;
    quint16 orientation;
    char grey;
};

/// Pages of one uncompressed grey each.
QByteArray Tiff(const std::vector<TiffPage>& pages) {
    QByteArray file = QByteArray("II*\0", 4) + Little<quint32>(8);
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const TiffPage& page = pages[i];
        constexpr quint32 kDirectoryBytes = 2 + 12 * 9 + 4;
        const auto data = static_cast<quint32>(file.size()) + kDirectoryBytes;
        const quint32 bytes = page.width * page.height;
        const std::vector<std::tuple<quint16, quint16, quint32>> fields{{256, 4, page.width},
                                                                        {257, 4, page.height},
                                                                        {258, 3, 8},
                                                                        {259, 3, 1},
                                                                        {262, 3, 1},
                                                                        {273, 4, data},
                                                                        {274, 3, page.orientation},
                                                                        {278, 4, page.height},
                                                                        {279, 4, bytes}};
        file += Little<quint16>(static_cast<quint16>(fields.size()));
        for (const auto& [tag, type, value] : fields) {
            file += Little(tag) + Little(type) + Little<quint32>(1) + Little(value);
        }
        file += Little<quint32>(i + 1 < pages.size() ? data + bytes : 0) +
                QByteArray(static_cast<int>(bytes), page.grey);
    }
    return file;
}

/// A JPEG with an EXIF segment that holds nothing but the orientation.
QByteArray WithOrientation(QByteArray jpeg, quint16 orientation) {
    const QByteArray exif = QByteArray("Exif\0\0II*\0", 10) + Little<quint32>(8) +
                            Little<quint16>(1) + Little<quint16>(274) + Little<quint16>(3) +
                            Little<quint32>(1) + Little<quint32>(orientation) + Little<quint32>(0);
    const auto length = static_cast<char>(exif.size() + 2);
    return jpeg.insert(2, QByteArray("\xFF\xE1\0", 3) + length + exif);
}

class StillReader : public testing::Test {
  protected:
    QString Path(const char* name) const { return folder_.filePath(QString::fromUtf8(name)); }
    QString Write(const char* name, const QByteArray& bytes) const {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    QString Save(const QImage& image, const char* name, const char* format,
                 int quality = -1) const {
        EXPECT_TRUE(image.save(Path(name), format, quality));
        return Path(name);
    }
    /// No picture, and a sentence that names the file and holds `words`.
    static void ExpectProblem(const QString& path, Failure::Kind kind, const char* words) {
        const SourceImage still = ReadStill(path);
        EXPECT_TRUE(still.image.isNull()) << qPrintable(path);
        ASSERT_TRUE(still.problem.has_value()) << qPrintable(path);
        EXPECT_EQ(still.problem->kind, kind) << qPrintable(still.problem->message);
        EXPECT_TRUE(still.problem->message.contains(path)) << qPrintable(still.problem->message);
        EXPECT_TRUE(still.problem->message.contains(QLatin1String(words)))
            << qPrintable(still.problem->message);
    }
    QTemporaryDir folder_;
};

TEST_F(StillReader, ReadsWhatTheContentSaysUnderAnyName) {
    const QImage pattern = Pattern(37, 21);
    for (const char* format : {"png", "bmp", "tiff"}) {
        for (const char* name : {"plain", "ü – 画像 📷@2x.JPE", "wrong.gif"}) {
            const SourceImage still = ReadStill(Save(pattern, name, format));
            EXPECT_FALSE(still.problem.has_value());
            EXPECT_EQ(still.image, pattern) << format << name;
            EXPECT_EQ(still.image.format(), QImage::Format_RGBA8888);
            EXPECT_EQ(still.image.devicePixelRatio(), 1);
            EXPECT_EQ(ImageTools::PixelSize(Path(name)), (ImageSize{37, 21}));
        }
    }
    EXPECT_LT(MeanDifference(ReadStill(Save(pattern, "a.png", "jpeg", 95)).image, pattern), 3);
}

TEST_F(StillReader, DepthsGreyPaletteAlphaAndResolution) {
    QImage pattern = Pattern(40, 30);
    const QImage deep = pattern.convertToFormat(QImage::Format_RGBA64);
    EXPECT_EQ(ReadStill(Save(deep, "deep.png", "png")).image, pattern);
    const QImage grey = pattern.convertToFormat(QImage::Format_Grayscale8);
    EXPECT_EQ(ReadStill(Save(grey, "grey.png", "png")).image,
              grey.convertToFormat(QImage::Format_RGBA8888));
    QImage palette(3, 1, QImage::Format_Indexed8);
    palette.setColorTable({qRgba(10, 20, 30, 255), qRgba(200, 100, 50, 128), qRgba(0, 0, 0, 0)});
    for (int x = 0; x < 3; ++x) {
        palette.setPixel(x, 0, static_cast<uint>(x));
    }
    const QImage read = ReadStill(Save(palette, "palette.png", "png")).image;
    EXPECT_EQ(read.pixel(0, 0), qRgba(10, 20, 30, 255));
    EXPECT_EQ(read.pixel(1, 0), qRgba(200, 100, 50, 128));
    EXPECT_EQ(qAlpha(read.pixel(2, 0)), 0);
    pattern.setDotsPerMeterX(5669);
    pattern.setDotsPerMeterY(5669);
    EXPECT_EQ(ReadStill(Save(pattern, "dpi.png", "png")).image.size(), QSize(40, 30));
}

TEST_F(StillReader, EmbeddedProfilesBecomeSrgb) {
    // The same light in Adobe RGB, by the formulas of the two spaces: for greys only the curve
    // differs, 2.19921875 there.
    QImage grey(256, 1, QImage::Format_RGB888);
    for (int x = 0; x < 256; ++x) {
        grey.setPixelColor(x, 0, QColor(x, x, x));
    }
    grey.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
    const QImage read = ReadStill(Save(grey, "adobe.png", "png")).image;
    for (int x = 0; x < 256; x += 5) {
        const double light = std::pow(x / 255.0, 2.19921875);
        const double expected =
            light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
        EXPECT_NEAR(qGreen(read.pixel(x, 0)), expected * 255, 1.01) << x;
    }
    // Display P3's colour (0.8, 0.5, 0.3) in sRGB: linear light times the matrix between the two.
    const auto toLight = [](double v) {
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    const auto fromLight = [](double v) {
        return v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
    };
    const double r = toLight(204 / 255.0);
    const double g = toLight(128 / 255.0);
    const double b = toLight(77 / 255.0);
    for (const auto format : {QImage::Format_RGBA8888, QImage::Format_RGBA64}) {
        QImage wide(4, 4, format);
        wide.fill(QColor(204, 128, 77, 255));
        wide.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
        const QRgb pixel = ReadStill(Save(wide, "p3.png", "png")).image.pixel(1, 1);
        EXPECT_NEAR(qRed(pixel), 255 * fromLight(1.22494 * r - 0.22494 * g), 1.5);
        EXPECT_NEAR(qGreen(pixel), 255 * fromLight(-0.04206 * r + 1.04206 * g), 1.5);
        EXPECT_NEAR(qBlue(pixel), 255 * fromLight(-0.01964 * r - 0.07864 * g + 1.09827 * b), 1.5);
    }
}

TEST_F(StillReader, OrientationTurnsUpright) {
    // What each orientation stores, told by the turns that undo it.
    const QImage upright = Pattern(48, 32);
    const QByteArray stored = Bytes(Save(upright, "stored.jpg", "jpeg", 95));
    const QImage plain = ReadStill(Path("stored.jpg")).image;
    const std::vector<std::pair<quint16, QImage>> cases{
        {1, plain},
        {2, plain.mirrored(true, false)},
        {3, plain.mirrored(true, true)},
        {4, plain.mirrored(false, true)},
        {5, plain.transformed(QTransform(0, 1, 1, 0, 0, 0))},
        {6, plain.transformed(QTransform().rotate(90))},
        {7, plain.transformed(QTransform(0, -1, -1, 0, 0, 0))},
        {8, plain.transformed(QTransform().rotate(270))}};
    for (const auto& [orientation, expected] : cases) {
        const QString path = Write("turned.jpg", WithOrientation(stored, orientation));
        const SourceImage still = ReadStill(path);
        EXPECT_EQ(still.image, expected) << orientation;
        const auto size = ImageTools::PixelSize(path);
        ASSERT_TRUE(size.has_value());
        EXPECT_EQ(QSize(static_cast<int>(size->width), static_cast<int>(size->height)),
                  expected.size());
    }
}

TEST_F(StillReader, FirstPageAtTheLargestSides) {
    const QString path =
        Write("pages.tif", Tiff({{20, 10, 1, 70}, {8, 30, 1, 90}, {40, 5, 6, 110}}));
    EXPECT_EQ(ImageTools::PixelSize(path), (ImageSize{20, 40}));
    const QImage first = ReadStill(path).image;
    EXPECT_EQ(first.size(), QSize(20, 40));
    EXPECT_EQ(first.pixel(3, 38), qRgb(70, 70, 70));

    const QString smaller = Write("smaller.tif", Tiff({{20, 10, 6, 70}, {5, 9, 1, 90}}));
    EXPECT_EQ(ImageTools::PixelSize(smaller), (ImageSize{10, 20}));
    EXPECT_EQ(ReadStill(smaller).image.size(), QSize(10, 20));

    // A page that only claims to be so large takes nothing from the picture.
    const QByteArray two = Tiff({{20, 10, 1, 70}, {8, 30, 1, 90}});
    const qsizetype second = two.indexOf(Little<quint16>(256) + Little<quint16>(4), 20);
    for (const quint32 height : {30U, 60'000U}) {
        QByteArray claim = two;
        claim.replace(second + 8, 4, Little<quint32>(70'000));
        claim.replace(second + 20, 4, Little<quint32>(height));
        const SourceImage still = ReadStill(Write("claim.tif", claim));
        EXPECT_EQ(still.image.size(), QSize(20, 10));
        EXPECT_FALSE(still.problem);
    }
}

TEST_F(StillReader, TiffSamplesOf64BitsCountAsTheirShareOfWhite) {
    // Uncompressed, one strip, tags in order: what stands for width, height, bits, packing,
    // meaning, place, samples, rows, bytes and format.
    const auto tiff = [&](const char* name, quint32 samples, quint16 format,
                          const std::vector<quint64>& numbers) {
        QByteArray data;
        for (const quint64 number : numbers) {
            data += Little(number);
        }
        const quint32 end = 8 + quint32(data.size());
        const QByteArray kinds = Little<quint16>(64) + Little<quint16>(64) + Little<quint16>(64) +
                                 Little(format) + Little(format) + Little(format);
        const quint32 width = quint32(numbers.size()) / samples / 2;
        const quint32 bits = samples == 1 ? 64 : end;
        const quint32 formats = samples == 1 ? format : end + 6;
        const std::vector<std::array<quint32, 4>> tags{{256, 4, 1, width},
                                                       {257, 4, 1, 2},
                                                       {258, 3, samples, bits},
                                                       {259, 3, 1, 1},
                                                       {262, 3, 1, samples == 1 ? 1U : 2U},
                                                       {273, 4, 1, 8},
                                                       {277, 3, 1, samples},
                                                       {278, 4, 1, 2},
                                                       {279, 4, 1, quint32(data.size())},
                                                       {339, 3, samples, formats}};
        QByteArray file = QByteArray("II*", 4) + Little(end + 12) + data + kinds +
                          Little<quint16>(quint16(tags.size()));
        for (const auto& [tag, type, count, value] : tags) {
            file += Little<quint16>(quint16(tag)) + Little<quint16>(quint16(type)) + Little(count) +
                    Little(value);
        }
        return Write(name, file + Little<quint32>(0));
    };
    const auto real = [](double value) { return std::bit_cast<quint64>(value); };
    const quint64 half = quint64(1) << 63;
    const auto colors = [&](const QString& path) {
        const SourceImage still = ReadStill(path);
        EXPECT_FALSE(still.problem);
        EXPECT_EQ(ImageTools::PixelSize(path), (ImageSize{double(still.image.width()), 2}));
        QStringList names;
        for (int i = 0; i < still.image.width() * 2; ++i) {
            names << still.image.pixelColor(i / 2, i % 2).name();
        }
        return names.join(QLatin1Char(' ')).toStdString();
    };
    EXPECT_EQ(colors(tiff("grey.tif", 1, 1, {0, half, half / 2, ~quint64(0)})),
              "#000000 #404040 #808080 #ffffff");
    EXPECT_EQ(colors(tiff("real.tif", 1, 3, {real(-1), real(0.5), real(7), real(0.2)})),
              "#000000 #ffffff #808080 #333333");
    EXPECT_EQ(
        colors(tiff("color.tif", 3, 3, {real(1), real(0), real(0.2), real(0), real(0.4), real(1)})),
        "#ff0033 #0066ff");
}

TEST_F(StillReader, FilesWithoutAPictureAreTold) {
    ExpectProblem(Path("none.png"), Failure::Kind::NotFound, "does not exist");
    ExpectProblem(folder_.path(), Failure::Kind::Unreadable, "folder");
    ExpectProblem(Write("empty.png", {}), Failure::Kind::Unreadable, "empty");
    ExpectProblem(Write("text.jpg", "just some text"), Failure::Kind::Unsupported, "not a picture");
    ExpectProblem(
        Write("drawing.png", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"),
        Failure::Kind::Unsupported, "not a picture");
    ASSERT_EQ(::mkfifo(QFile::encodeName(Path("pipe.png")).constData(), 0600), 0);
    ExpectProblem(Path("pipe.png"), Failure::Kind::Unreadable, "pipe");
    ExpectProblem(QStringLiteral("/dev/zero"), Failure::Kind::Unreadable, "device");
    EXPECT_EQ(ReadStill({}).problem->kind, Failure::Kind::NotFound);
    for (const char* signature :
         {"\xFF\xD8\xFF\xE0", "\x89PNG\r\n\x1A\n", "GIF89a", "BM", "II*", "\xFF\x4F\xFF\x51"}) {
        ExpectProblem(Write("stub", QByteArray(signature) + QByteArray(60, '\0')),
                      Failure::Kind::Unreadable, "damaged");
        EXPECT_FALSE(ImageTools::PixelSize(Path("stub")).has_value());
    }
    EXPECT_FALSE(ImageTools::PixelSize(Path("text.jpg")).has_value());
}

TEST_F(StillReader, HugeClaimsAreRefusedBeforeDecoding) {
    QByteArray png = Bytes(Save(Pattern(8, 8), "small.png", "png"));
    const auto claim = [&](quint32 width, quint32 height) {
        QByteArray header = png.mid(12, 17);
        qToBigEndian(width, header.data() + 4);
        qToBigEndian(height, header.data() + 8);
        quint32 sum = 0xFFFFFFFF;  // the checksum of the header, bit by bit
        for (const char c : header) {
            sum ^= static_cast<uchar>(c);
            for (int bit = 0; bit < 8; ++bit) {
                sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320U : 0U);
            }
        }
        header.resize(21);
        qToBigEndian(~sum, header.data() + 17);
        return QByteArray(png).replace(12, 21, header);
    };
    EXPECT_EQ(ReadStill(Write("same.png", claim(8, 8))).image, Pattern(8, 8));
    ExpectProblem(Write("bomb.png", claim(60000, 60000)), Failure::Kind::TooLarge, "400 million");
    ExpectProblem(Write("trap.png", claim(18000, 18000)), Failure::Kind::TooLarge, "bytes");
    const QByteArray side = Little<quint16>(60000);
    const QByteArray gif = "GIF89a" + side + side +
                           QByteArray("\x80\0\0\0\0\0\xFF\xFF\xFF,\0\0\0\0", 14) + side + side +
                           QByteArray("\0\2\2D\1\0;", 7);
    EXPECT_TRUE(ReadStill(Write("bomb.gif", gif)).image.isNull());
    QByteArray bmp = Bytes(Save(Pattern(8, 8), "small.bmp", "bmp"));
    bmp.replace(18, 8, Little<quint32>(60000) + Little<quint32>(60000));
    EXPECT_TRUE(ReadStill(Write("bomb.bmp", bmp)).image.isNull());
    QByteArray tiff = Tiff({{8, 8, 1, 1}});
    tiff.replace(18, 4, Little<quint32>(60000)).replace(30, 4, Little<quint32>(60000));
    ExpectProblem(Write("bomb.tif", tiff), Failure::Kind::TooLarge, "60000");
    QByteArray stream =
        QByteArray("\xFF\x4F\xFF\x51\0\x2F\0\0\0\0\xEA\x60\0\0\xEA\x60", 16) + QByteArray(60, '\0');
    ExpectProblem(Write("bomb.jp2", stream), Failure::Kind::TooLarge, "60000");
}

TEST_F(StillReader, CutShortGivesWhatIsThere) {
    const QImage pattern = Pattern(320, 200);
    for (const char* format : {"jpeg", "png"}) {
        const QByteArray whole = Bytes(Save(pattern, "whole", format, 90));
        const QImage full = ReadStill(Path("whole")).image;
        EXPECT_FALSE(ReadStill(Write("tail", whole + QByteArray(100, 'x'))).problem.has_value())
            << format;
        const SourceImage part = ReadStill(Write("part", whole.left(whole.size() * 6 / 10)));
        ASSERT_EQ(part.image.size(), full.size()) << format;
        ASSERT_TRUE(part.problem.has_value()) << format;
        EXPECT_TRUE(part.problem->message.contains(QLatin1String("cut short")))
            << qPrintable(part.problem->message);
        // The share it names holds the whole picture's pixels, the rest does not.
        const QString message = part.problem->message;
        const int percent = message.mid(message.indexOf(QLatin1String("only ")) + 5)
                                .section(QLatin1Char(' '), 0, 0)
                                .toInt();
        EXPECT_GT(percent, 20);
        EXPECT_LT(percent, 90);
        const int good = full.height() * percent / 100 - 16;
        EXPECT_LT(MeanDifference(part.image.copy(0, 0, 320, good), full.copy(0, 0, 320, good)), 0.5)
            << format;
        EXPECT_NE(part.image.copy(0, 190, 320, 10), full.copy(0, 190, 320, 10)) << format;
    }
}

TEST_F(StillReader, OnePhotographInManyFormats) {
    const QDir media(QStringLiteral(LUMIRRA_MEDIA_DIR));
    const QImage reference = ReadStill(media.filePath(QStringLiteral("photo.bmp"))).image;
    const QStringList names = media.entryList({QStringLiteral("photo*")});
    ASSERT_EQ(names.size(), 13);
    for (const QString& name : names) {
        const SourceImage still = ReadStill(media.filePath(name));
        EXPECT_FALSE(still.problem.has_value());
        ASSERT_EQ(still.image.size(), reference.size()) << qPrintable(name);
        const bool grey = name.contains(QLatin1String("grey"));
        const auto toGrey = [](const QImage& image) {
            return image.convertToFormat(QImage::Format_Grayscale8);
        };
        const double difference = grey ? MeanDifference(toGrey(still.image), toGrey(reference))
                                       : MeanDifference(still.image, reference);
        EXPECT_LT(difference, 3) << qPrintable(name);
    }
}

}  // namespace
}  // namespace lumirra
