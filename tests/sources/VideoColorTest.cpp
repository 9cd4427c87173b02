#include <zlib.h>

#include <QFile>
#include <QtEndian>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "VideoClips.h"
#include "sources/StillReader.h"
#include "sources/video/PlanarYuv.h"
#include "sources/video/YuvRows.h"

namespace lumirra {
namespace {

/// Mean over all pixels and channels.
double Difference(const QImage& a, const QImage& b) {
    EXPECT_EQ(a.size(), b.size());
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

TEST(VideoColor, OnePhotographDescribedInFiveWaysLooksAlike) {
    std::vector<QImage> pictures;
    for (const char* name : {"bt709-limited", "bt601-limited", "bt709-full", "hdr-pq", "hdr-hlg"}) {
        const QString path = Media(QStringLiteral("colors-%1.mp4").arg(QLatin1String(name)));
        pictures.push_back(Opened(path).At(0.5).image);
    }
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            EXPECT_LE(Difference(pictures[i], pictures[k]), i < 3 ? 2 : 5) << i << " " << k;
        }
    }
}

// The same for a picture made here, with the colours of wide-gamut descriptions too; another
// program's conversions are the reference.
TEST_F(MadeClip, EveryDescriptionOfAPictureGivesIt) {
    const QString source = QStringLiteral(
        "nullsrc=s=96x64:d=0.4:r=5,format=gbrp,"
        "geq=r=40+150*X/96:g=200-150*Y/64:b=110+90*sin(X/15)*sin(Y/11)");
    const QImage wanted =
        Opened(Generate(QStringLiteral("rgb.mkv"), source, QStringLiteral("-c:v ffv1")))
            .At(0)
            .image;
    const QString toLinear = QStringLiteral(
        ",setparams=color_primaries=bt709:color_trc=bt709:colorspace=gbr,"
        "zscale=t=linear:npl=203,format=gbrpf32le,");
    struct Case {
        const char* name;
        const char* filter;
        const char* tags;
        double most;
        bool linear;
    };
    const std::vector<Case> cases = {
        {"709", ",zscale=m=709:r=limited,format=yuv420p", "-colorspace bt709", 2, false},
        {"601", ",zscale=m=170m:r=limited,format=yuv444p", "-colorspace smpte170m", 2, false},
        {"full", ",zscale=m=709:r=full,format=yuv422p", "-colorspace bt709 -color_range pc", 2,
         false},
        {"deep", ",zscale=m=709:r=limited,format=yuv420p10le", "-colorspace bt709", 2, false},
        {"wide", "zscale=p=2020:t=2020_10:m=2020_ncl:r=limited,format=yuv444p10le",
         "-colorspace bt2020nc -color_primaries bt2020 -color_trc bt2020-10", 2, true},
        {"p3", "zscale=p=smpte432:t=709:m=709:r=limited,format=yuv444p10le",
         "-colorspace bt709 -color_primaries smpte432 -color_trc bt709", 2, true},
        {"pq", "zscale=p=2020:t=smpte2084:m=2020_ncl:r=limited:npl=203,format=yuv444p10le",
         "-colorspace bt2020nc -color_primaries bt2020 -color_trc smpte2084", 4, true}};
    for (const Case& one : cases) {
        const QString filter =
            source + (one.linear ? toLinear : QString()) + QLatin1String(one.filter);
        const QString path = Generate(QLatin1String(one.name) + QStringLiteral(".mkv"), filter,
                                      QStringLiteral("-c:v ffv1 ") + QLatin1String(one.tags));
        EXPECT_LE(Difference(Opened(path).At(0.5).image, wanted), one.most) << one.name;
    }
}

/// The PNG file with one more chunk behind its header.
void AddChunk(const QString& png, const QByteArray& nameAndData) {
    QFile file(png);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    QByteArray chunk(4, '\0');
    qToBigEndian(quint32(nameAndData.size() - 4), chunk.data());
    chunk += nameAndData + QByteArray(4, '\0');
    const auto* data = reinterpret_cast<const Bytef*>(nameAndData.constData());
    qToBigEndian(quint32(crc32(0, data, uInt(nameAndData.size()))),
                 chunk.data() + chunk.size() - 4);
    constexpr qsizetype kHeaderEnd = 33;
    bytes.insert(kHeaderEnd, chunk);
    ASSERT_TRUE(file.seek(0) && file.write(bytes) == bytes.size());
}

// A picture that another program took from a film looks like the film: by the gamma that such
// programs write, and by the codes of its colours.
TEST_F(MadeClip, PicturesTakenFromAFilmLookLikeIt) {
    const QString source = QStringLiteral(
        "nullsrc=s=96x64:d=0.2:r=5,format=gbrp,"
        "geq=r=40+150*X/96:g=200-150*Y/64:b=110+90*sin(X/15)*sin(Y/11)%1");
    struct Case {
        const char* name;
        const char* filter;
        const char* tags;
        const char* codes;
    };
    const std::vector<Case> cases = {
        {"709", ",zscale=m=709:r=limited,format=yuv444p",
         "-colorspace bt709 -color_primaries bt709 -color_trc bt709", nullptr},
        {"601", ",zscale=m=170m:r=limited,format=yuv444p",
         "-colorspace smpte170m -color_primaries smpte170m -color_trc smpte170m", nullptr},
        {"2020", ",zscale=m=2020_ncl:r=limited,format=yuv444p10le",
         "-colorspace bt2020nc -color_primaries bt2020 -color_trc bt2020-10", nullptr},
        {"p3", ",format=gbrp", "-color_primaries smpte432 -color_trc bt709", "\x0c\x01"},
        {"coded709", ",format=gbrp", "-color_trc bt709", "\x01\x01"},
        {"pq", ",format=gbrp10le", "-color_primaries bt2020 -color_trc smpte2084", "\x09\x10"},
        {"hlg", ",format=gbrp10le", "-color_primaries bt2020 -color_trc arib-std-b67", "\x09\x12"}};
    for (const Case& one : cases) {
        const QString name = QLatin1String(one.name);
        const QString film =
            Generate(name + QStringLiteral(".mkv"), source.arg(QLatin1String(one.filter)),
                     QStringLiteral("-c:v ffv1 ") + QLatin1String(one.tags));
        const QString png = Remux(film, name + QStringLiteral(".png"),
                                  QStringLiteral("-sws_flags accurate_rnd+full_chroma_int "
                                                 "-frames:v 1"));
        if (one.codes != nullptr) {
            AddChunk(png, "cICP" + QByteArray(one.codes, 2) + QByteArray("\0\1", 2));
        }
        EXPECT_LE(Difference(ReadStill(png).image, Opened(film).At(0).image), 1) << one.name;
    }
    const QString other = Path(QStringLiteral("709.png"));
    const QImage before = ReadStill(other).image;
    AddChunk(other, QByteArray("sRGB\0", 5));
    EXPECT_LE(Difference(ReadStill(other).image, before), 0)
        << "sRGB has the say, and says the same";
    QFile file(other);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    EXPECT_NE(file.readAll().indexOf("gAMA"), -1);
}

// Every way to turn and mirror a track: where each quarter of the stored picture is shown follows
// from the matrix itself.
TEST_F(MadeClip, TracksAreTurnedAndMirrored) {
    QFile file(Generate(QStringLiteral("quarters.mov"),
                        QStringLiteral("nullsrc=s=96x48:d=0.4:r=5,format=gray,"
                                       "geq=40+60*gte(X\\,48)+120*gte(Y\\,24)"),
                        QStringLiteral("-c:v qtrle -pix_fmt rgb24")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray stored = file.readAll();
    for (int turn = 0; turn < 8; ++turn) {
        const int sign = turn & 1 ? -1 : 1;
        const int other = turn & 2 ? -1 : 1;
        const std::array<int, 4> matrix = turn & 4 ? std::array<int, 4>{0, sign, other, 0}
                                                   : std::array<int, 4>{sign, 0, 0, other};
        QByteArray bytes = stored;
        constexpr std::array<int, 4> kPlaces = {0, 1, 3, 4};
        for (std::size_t i = 0; i < 4; ++i) {  // 16.16, big-endian, 44 bytes after the box's name
            const char high = static_cast<char>(matrix[i] >> 1);
            const std::array<char, 4> number = {high, static_cast<char>(matrix[i]), 0, 0};
            bytes.replace(bytes.indexOf("tkhd") + 44 + 4 * kPlaces[i], 4, number.data(), 4);
        }
        QFile turned(Path(QStringLiteral("turned%1.mov").arg(turn)));
        ASSERT_TRUE(turned.open(QIODevice::WriteOnly));
        turned.write(bytes);
        turned.close();
        VideoReader reader = Opened(turned.fileName());
        const QImage image = reader.At(0.5).image;
        ASSERT_EQ(image.size(), turn & 4 ? QSize(48, 96) : QSize(96, 48)) << turn;
        EXPECT_EQ(image.size(), QSize(reader.Info().shownWidth, reader.Info().shownHeight));
        for (const auto& [x, y] : {std::pair(-1, -1), {1, -1}, {-1, 1}, {1, 1}}) {
            const int shownX = matrix[0] * x + matrix[2] * y;
            const int shownY = matrix[1] * x + matrix[3] * y;
            const QColor color = image.pixelColor((2 + shownX) * image.width() / 4,
                                                  (2 + shownY) * image.height() / 4);
            EXPECT_NEAR(color.green(), 40 + 60 * (x > 0) + 120 * (y > 0), 1) << turn;
        }
    }
}

// Palettes come once, with the first packet, whatever was read of the file before.
TEST_F(MadeClip, VideosOfPaletteColorsHaveTheirColors) {
    for (const char* name : {"palette.avi", "palette.mov"}) {
        const QString film =
            Generate(QLatin1String(name),
                     QStringLiteral("nullsrc=s=96x64:d=1:r=5,format=gbrp,"
                                    "geq=r=36*trunc(X/16):g=255*gte(Y\\,32):b=85*mod(N\\,4)"),
                     QStringLiteral("-c:v rawvideo -pix_fmt pal8"));
        VideoReader reader = Opened(film);
        for (const double position : {0.1, 0.7, 0.3, 0.1}) {
            const QColor color = reader.At(position).image.pixelColor(84, 50);
            EXPECT_NEAR(color.red(), 180, 3) << name << position;
            EXPECT_NEAR(color.green(), 255, 3) << name << position;
            EXPECT_NEAR(color.blue(), 85 * std::floor(5 * position), 3) << name << position;
        }
    }
}

struct Planes {
    std::array<std::vector<std::uint8_t>, 3> bytes;
    FfmpegPtr<AVFrame> frame{av_frame_alloc()};
};

constexpr int kGuard = 32;

/// Random planes with guard bytes around every row; `across`, `down`: chroma at half size.
Planes RandomPlanes(int width, int height, bool across, bool down, std::mt19937& random) {
    Planes planes;
    planes.frame->width = width;
    planes.frame->height = height;
    for (std::size_t p = 0; p < 3; ++p) {
        const int columns = p > 0 && across ? (width + 1) / 2 : width;
        const int rows = p > 0 && down ? (height + 1) / 2 : height;
        const int stride = columns + kGuard + static_cast<int>(p);  // odd starts too
        planes.bytes[p].resize(static_cast<std::size_t>(stride) * rows + 1);
        for (std::uint8_t& byte : planes.bytes[p]) {
            byte = static_cast<std::uint8_t>(random());
        }
        planes.frame->data[p] = planes.bytes[p].data() + 1;
        planes.frame->linesize[p] = stride;
    }
    return planes;
}

/// A chroma sample at luma place (x, y), in doubles, by where the samples lie: straight lines
/// between them, the outermost repeated.
double ChromaAt(const Planes& planes, std::size_t plane, double x, double y, bool across, bool down,
                double left, double top) {
    const AVFrame& frame = *planes.frame;
    const int columns = across ? (frame.width + 1) / 2 : frame.width;
    const int rows = down ? (frame.height + 1) / 2 : frame.height;
    const double u = across ? (x - left) / 2 : x;
    const double v = down ? (y - top) / 2 : y;
    const auto at = [&](double column, double row) {
        const int c = std::clamp(static_cast<int>(column), 0, columns - 1);
        const int r = std::clamp(static_cast<int>(row), 0, rows - 1);
        return static_cast<double>(frame.data[plane][r * frame.linesize[plane] + c]);
    };
    const double c0 = std::floor(u);
    const double r0 = std::floor(v);
    const double upper = at(c0, r0) * (1 - u + c0) + at(c0 + 1, r0) * (u - c0);
    const double lower = at(c0, r0 + 1) * (1 - u + c0) + at(c0 + 1, r0 + 1) * (u - c0);
    return upper * (1 - v + r0) + lower * (v - r0) - 128;
}

TEST(PlanarYuv, EqualsTheFormulaInDoubles) {
    struct Format {
        AVPixelFormat format;
        bool across, down;
        AVChromaLocation location;
        double left, top;
    };
    const std::vector<Format> formats = {
        {AV_PIX_FMT_YUV420P, true, true, AVCHROMA_LOC_LEFT, 0, 0.5},
        {AV_PIX_FMT_YUV420P, true, true, AVCHROMA_LOC_CENTER, 0.5, 0.5},
        {AV_PIX_FMT_YUV420P, true, true, AVCHROMA_LOC_TOPLEFT, 0, 0},
        {AV_PIX_FMT_YUV422P, true, false, AVCHROMA_LOC_UNSPECIFIED, 0, 0},
        {AV_PIX_FMT_YUV444P, false, false, AVCHROMA_LOC_UNSPECIFIED, 0, 0}};
    std::mt19937 random(5);
    for (int width = 1; width <= 37; width += width < 20 ? 1 : 4) {
        const Format& one = formats[static_cast<std::size_t>(width) % formats.size()];
        const int height = 1 + static_cast<int>(random() % 9);
        const bool full = random() % 2 == 0;
        const Planes planes = RandomPlanes(width, height, one.across, one.down, random);
        planes.frame->format = one.format;
        planes.frame->chroma_location = one.location;
        planes.frame->colorspace = AVCOL_SPC_BT709;
        planes.frame->color_range = full ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
        const VideoFrameColor color = ColorOf(*planes.frame);
        ASSERT_TRUE(IsPlanarYuv(*planes.frame, color));
        const QImage image = PlanarYuvPicture(*planes.frame, color);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const double luma = planes.frame->data[0][y * planes.frame->linesize[0] + x];
                const double light = full ? luma : (luma - 16) * 255 / 219;
                const double scale = full ? 1 : 255.0 / 224;
                const auto chroma = [&](std::size_t plane) {
                    return scale *
                           ChromaAt(planes, plane, x, y, one.across, one.down, one.left, one.top);
                };
                const double u = chroma(1);
                const double v = chroma(2);
                // ITU-R BT.709: Y = 0.2126 R + 0.7152 G + 0.0722 B, U and V scaled differences.
                const double red = light + 1.5748 * v;
                const double blue = light + 1.8556 * u;
                const double green = (light - 0.2126 * red - 0.0722 * blue) / 0.7152;
                const QColor got = image.pixelColor(x, y);
                EXPECT_NEAR(got.red(), std::clamp(red, 0.0, 255.0), 0.51) << width << " " << x;
                EXPECT_NEAR(got.green(), std::clamp(green, 0.0, 255.0), 0.51) << width << " " << x;
                EXPECT_NEAR(got.blue(), std::clamp(blue, 0.0, 255.0), 0.51) << width << " " << x;
            }
        }
    }
}

TEST(PlanarYuv, VectorAndPlainRowsAreTheSameAndStayInside) {
    std::mt19937 random(6);
    const YuvMatrix matrix = {16, 1.16438F, 0.11208F, -0.01333F, -0.03331F, 0.13206F};
    for (std::size_t width = 0; width <= 70; ++width) {
        std::vector<std::uint8_t> luma(width + 1);
        std::vector<std::int16_t> u(width + 1);
        std::vector<std::int16_t> v(width + 1);
        for (std::size_t i = 0; i <= width; ++i) {
            luma[i] = static_cast<std::uint8_t>(random());
            u[i] = static_cast<std::int16_t>(static_cast<int>(random() % 4081) - 2048);
            v[i] = static_cast<std::int16_t>(static_cast<int>(random() % 4081) - 2048);
        }
        std::vector<std::uint8_t> vector(4 * width + kGuard + 1, 77);
        std::vector<std::uint8_t> plain = vector;
        ConvertYuvRow(matrix, luma.data() + 1, u.data() + 1, v.data() + 1, vector.data() + 1,
                      width);
        ConvertYuvRowPlainly(matrix, luma.data() + 1, u.data() + 1, v.data() + 1, plain.data() + 1,
                             width);
        EXPECT_EQ(vector, plain) << width;
        EXPECT_EQ(vector[4 * width + 1], 77) << width;
    }
}

}  // namespace
}  // namespace lumirra
