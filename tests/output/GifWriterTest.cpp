#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QTemporaryDir>
#include <cmath>
#include <new>
#include <random>

#include "output/GifDecode.h"
#include "output/GifWriter.h"

namespace lumirra {
namespace {

using test::GifContents;

QColor Random(std::mt19937& random) {
    return QColor::fromRgb(static_cast<QRgb>(random() & 0xFFFFFFU));
}

/// Blocks of few colours that shift from frame to frame; some transparent where `holes`.
QImage FlatArt(int width, int height, int step, bool holes) {
    std::mt19937 random(7);
    std::vector<QColor> colors;
    for (int i = 0; i < 60; ++i) {
        colors.push_back(Random(random));
    }
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto cell = static_cast<std::size_t>((x + 3 * step) / 9 * 7 + (y + step) / 8 * 3);
            const bool hole = holes && cell % 4 == 0;
            image.setPixelColor(x, y, hole ? QColor(0, 0, 0, 0) : colors[cell % colors.size()]);
        }
    }
    return image;
}

/// Smooth colours with grain, as a camera gives; a disc moves over it.
QImage Scene(int width, int height, int step) {
    std::mt19937 random(static_cast<unsigned>(100 + step));
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double dx = x - width * 0.3 - 4 * step;
            const double dy = y - height * 0.5;
            const bool disc = dx * dx + dy * dy < height * height * 0.05;
            const int grain = static_cast<int>(random() % 3) - 1;
            const auto level = [grain](double v) {
                return std::clamp(static_cast<int>(v) + grain, 0, 255);
            };
            image.setPixelColor(
                x, y,
                disc ? QColor(level(200 + 30 * std::sin(x * 0.2)), level(60), level(40))
                     : QColor(level(255.0 * x / width), level(90 + 60.0 * y / height),
                              level(200 - 150.0 * x / width)));
        }
    }
    return image;
}

double Psnr(const QImage& a, const QImage& b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor p = a.pixelColor(x, y);
            const QColor q = b.pixelColor(x, y);
            sum += std::pow(p.red() - q.red(), 2) + std::pow(p.green() - q.green(), 2) +
                   std::pow(p.blue() - q.blue(), 2);
        }
    }
    const double mean = sum / (3.0 * a.width() * a.height());
    return mean == 0 ? 99 : 10 * std::log10(255 * 255 / mean);
}

/// What a transparent pixel would look like is nobody's business.
QImage WithoutHidden(QImage image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() == 0) {
                image.setPixelColor(x, y, QColor(0, 0, 0, 0));
            }
        }
    }
    return image;
}

class GifWriterTest : public testing::Test {
  protected:
    QString Path(const QString& name) const { return folder_.filePath(name); }

    QString Store(const QImage& image) {
        const QString path = Path(QStringLiteral("frame%1.png").arg(count_++));
        EXPECT_TRUE(image.save(path));
        return path;
    }

    QStringList Store(const std::vector<QImage>& images) {
        QStringList paths;
        for (const QImage& image : images) {
            paths << Store(image);
        }
        return paths;
    }

    GifRequest Request(const QStringList& paths) const {
        GifRequest request;
        request.frames = FramesAt(paths);
        request.destination = Path(QStringLiteral("out.gif"));
        return request;
    }

    /// Writes, then holds the file against four readers that have nothing to do with the writer.
    GifContents Write(const GifRequest& request) {
        const Outcome<GifResult> result = WriteGif(request, {}, {});
        EXPECT_TRUE(result) << qPrintable(result ? QString() : result.failure().message);
        GifContents gif = test::ParseGifFile(request.destination);
        if (!result) {
            return gif;
        }
        EXPECT_TRUE(gif.valid);
        EXPECT_EQ(gif.width, result->width);
        EXPECT_EQ(static_cast<int>(gif.images.size()), result->frames);
        EXPECT_EQ(QFile(request.destination).size(), result->bytes);
        for (const auto& image : gif.images) {
            EXPECT_EQ(QSize(image.width, image.height), QSize(gif.width, gif.height));
        }
        const auto foreign = test::DecodeByFfmpeg(request.destination, gif.width, gif.height);
        EXPECT_EQ(foreign.complaints, QByteArray());
        EXPECT_EQ(foreign.frames.size(), gif.images.size());
        QImageReader reader(request.destination);
        for (std::size_t i = 0; i < std::min(foreign.frames.size(), gif.images.size()); ++i) {
            EXPECT_EQ(WithoutHidden(foreign.frames[i]), gif.images[i].canvas)
                << "ffmpeg, image " << i;
            const QImage shown = reader.read().convertToFormat(QImage::Format_RGBA8888);
            EXPECT_EQ(WithoutHidden(shown), gif.images[i].canvas) << "toolkit, image " << i;
        }
        const QByteArray text = test::RunProgram(QStringLiteral("giftext"), {request.destination});
        EXPECT_TRUE(text.contains("GIF file terminated normally")) << text.constData();
        const QByteArray info = test::RunProgram(QStringLiteral("gifsicle"),
                                                 {QStringLiteral("--info"), request.destination});
        EXPECT_FALSE(info.contains("warning") || info.contains("error")) << info.constData();
        return gif;
    }

    QStringList Leftovers() const {
        QStringList names = QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden);
        names.removeIf(
            [](const QString& name) { return name.startsWith(QStringLiteral("frame")); });
        return names;
    }

    QTemporaryDir folder_;
    int count_ = 0;
};

TEST_F(GifWriterTest, FewColorsAreExact) {
    std::vector<QImage> frames;
    for (int step = 0; step < 6; ++step) {
        frames.push_back(FlatArt(97, 61, step / 2, false));
    }
    const GifContents gif = Write(Request(Store(frames)));
    ASSERT_EQ(gif.images.size(), frames.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_EQ(gif.images[i].canvas, frames[i]) << i;
    }
}

// No image has more than 255 colours, but all of them together do, and those that go on being shown
// need not be in a later image's table, where their neighbours in colour are.
TEST_F(GifWriterTest, DrawingsStayExactWhileTheirColorsChange) {
    const auto color = [](int x, int y, int step) {
        return QColor(20 * (x % 5), 100 + 40 * (x % 3), y / 10 * 20 + step);
    };
    QImage drawing(96, 64, QImage::Format_RGBA8888);
    for (int y = 0; y < drawing.height(); ++y) {
        for (int x = 0; x < drawing.width(); ++x) {
            drawing.setPixelColor(x, y, color(x, y, 0));
        }
    }
    std::vector<QImage> frames = {drawing};
    for (int step = 1; step < 10; ++step) {
        drawing = frames.front();
        for (int y = 10; y < 50; ++y) {
            for (int x = 0; x < 40; ++x) {
                const int slanted = x + y / 2 + step;
                drawing.setPixelColor(slanted, y, color(slanted, y, step));
            }
        }
        frames.push_back(drawing);
        frames.push_back(step % 2 == 0 ? frames.front() : drawing);
    }
    const GifContents gif = Write(Request(Store(frames)));
    ASSERT_EQ(gif.images.size(), frames.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_EQ(gif.images[i].canvas, frames[i]) << i;
    }
}

TEST_F(GifWriterTest, PixelsMayVanishAndComeBack) {
    std::vector<QImage> frames;
    for (const int step : {0, 1, 1, 2, 0, 5}) {
        frames.push_back(FlatArt(50, 41, step, true));
    }
    frames.push_back(QImage(50, 41, QImage::Format_RGBA8888));
    frames.back().fill(0);
    frames.push_back(frames.front());
    const GifContents gif = Write(Request(Store(frames)));
    ASSERT_EQ(gif.images.size(), frames.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_EQ(gif.images[i].canvas, frames[i]) << i;
    }
    EXPECT_EQ(gif.images.back().disposal, 2) << "the first image must start on an empty canvas";
}

TEST_F(GifWriterTest, SoftAlphaIsDecidedAtOneHalf) {
    QImage ramp(256, 3, QImage::Format_RGBA8888);
    for (int x = 0; x < 256; ++x) {
        for (int y = 0; y < 3; ++y) {
            ramp.setPixelColor(x, y, QColor(200, 30, 10, x));
        }
    }
    const GifContents gif = Write(Request({Store(ramp)}));
    ASSERT_EQ(gif.images.size(), 1U);
    for (int x = 0; x < 256; ++x) {
        const QColor shown = gif.images[0].canvas.pixelColor(x, 1);
        EXPECT_EQ(shown, x < 128 ? QColor(0, 0, 0, 0) : QColor(200, 30, 10)) << x;
    }
}

TEST_F(GifWriterTest, SceneStaysCloseAndStillPartsStandStill) {
    std::vector<QImage> frames;
    for (int step = 0; step < 8; ++step) {
        frames.push_back(Scene(160, 90, step));
    }
    const GifContents gif = Write(Request(Store(frames)));
    ASSERT_EQ(gif.images.size(), frames.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_GT(Psnr(gif.images[i].canvas, frames[i]), 36) << i;
    }
    // The right edge is only grain: it must not crawl.
    const QRect still(120, 0, 40, 90);
    int changed = 0;
    for (int y = still.top(); y <= still.bottom(); ++y) {
        for (int x = still.left(); x <= still.right(); ++x) {
            changed += gif.images[6].canvas.pixel(x, y) != gif.images[7].canvas.pixel(x, y) ? 1 : 0;
        }
    }
    EXPECT_LT(changed, still.width() * still.height() / 50);
}

TEST_F(GifWriterTest, BytesDoNotDependOnThreads) {
    std::vector<QImage> frames;
    for (int step = 0; step < 7; ++step) {
        frames.push_back(Scene(120, 70, step * 3));
    }
    GifRequest request = Request(Store(frames));
    QByteArray first;
    for (const int threads : {1, 2, 3, 7}) {
        request.threads = threads;
        ASSERT_TRUE(WriteGif(request, {}, {}));
        QFile file(request.destination);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        first = first.isEmpty() ? bytes : first;
        EXPECT_EQ(bytes, first) << threads;
    }
}

TEST_F(GifWriterTest, OddShapes) {
    const auto filled = [](int width, int height, QColor color) {
        QImage image(width, height, QImage::Format_RGBA8888);
        image.fill(color);
        return image;
    };
    const GifContents dot = Write(Request({Store(filled(1, 1, Qt::red))}));
    EXPECT_EQ(dot.images.at(0).canvas, filled(1, 1, Qt::red));

    std::vector<QImage> wide = {filled(65535, 1, Qt::blue), filled(65535, 1, Qt::blue)};
    wide[1].setPixelColor(65534, 0, Qt::white);
    const GifContents line = Write(Request(Store(wide)));
    EXPECT_EQ(line.images.at(1).canvas, wide[1]);

    QImage tall = filled(1, 3000, Qt::darkGreen);
    tall.setPixelColor(0, 2999, Qt::yellow);
    EXPECT_EQ(Write(Request({Store(tall)})).images.at(0).canvas, tall);

    QImage clear = filled(5, 4, QColor(0, 0, 0, 0));
    EXPECT_EQ(Write(Request({Store(clear)})).images.at(0).canvas, clear);
}

TEST_F(GifWriterTest, FieldsOfTheFile) {
    const QStringList one = {Store(FlatArt(20, 20, 0, false))};
    GifRequest request = Request(one + one);
    request.loopCount = 3;
    GifContents gif = Write(request);
    EXPECT_EQ(gif.loops, 3);
    EXPECT_EQ(gif.images.at(1).delay, 10);
    request.repeatForever = true;
    EXPECT_EQ(Write(request).loops, 0);

    request.repeatForever = false;
    request.loopCount = 0;
    const std::pair<double, int> delays[] = {{0.1, 10},    {0.006, 1},       {0, 1},
                                             {-5, 1},      {0.125, 13},      {655.35, 65535},
                                             {1e6, 65535}, {std::nan(""), 1}};
    for (const auto& [seconds, hundredths] : delays) {
        request.delaySeconds = seconds;
        ASSERT_TRUE(WriteGif(request, {}, {}));
        gif = test::ParseGifFile(request.destination);
        EXPECT_EQ(gif.loops, -1);
        EXPECT_EQ(gif.images.at(0).delay, hundredths) << seconds;
    }
}

TEST_F(GifWriterTest, EntriesAreWrittenAsTheyStand) {
    const QStringList parts =
        Store({FlatArt(30, 20, 0, false), FlatArt(30, 20, 4, false), FlatArt(30, 20, 9, false)});
    const QStringList order = {parts[2], parts[0], parts[0], parts[1], parts[2], parts[0]};
    const GifContents gif = Write(Request(order));
    ASSERT_EQ(gif.images.size(), 6U);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(
            gif.images[i].canvas,
            QImage(order[static_cast<qsizetype>(i)]).convertToFormat(QImage::Format_RGBA8888));
    }
}

TEST_F(GifWriterTest, ManyFramesStayInOrder) {
    QStringList paths;
    for (int i = 0; i < 16; ++i) {
        QImage image(4, 4, QImage::Format_RGBA8888);
        image.fill(QColor(i * 16, 255 - i * 16, 7));
        paths << Store(image);
    }
    GifRequest request = Request({});
    for (int i = 0; i < 10000; ++i) {
        request.frames.push_back({paths[i * 7 % 16], {}, {}});
    }
    int last = 0;
    int calls = 0;
    const auto result = WriteGif(request, {}, [&](int done, int total) {
        EXPECT_GE(done, last);
        EXPECT_EQ(total, 10000);
        last = done;
        ++calls;
    });
    ASSERT_TRUE(result);
    EXPECT_EQ(last, 10000);
    EXPECT_GT(calls, 1000);
    const GifContents gif = test::ParseGifFile(request.destination);
    ASSERT_TRUE(gif.valid);
    ASSERT_EQ(gif.images.size(), 10000U);
    for (std::size_t i = 0; i < gif.images.size(); i += 97) {
        EXPECT_EQ(gif.images[i].canvas.pixelColor(2, 2).red(), static_cast<int>(i) * 7 % 16 * 16);
    }
}

TEST_F(GifWriterTest, FramesOfDifferentSizes) {
    QStringList paths;
    for (const QSize size : {QSize(400, 300), QSize(200, 100), QSize(300, 401)}) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor(size.width() / 2, 10, 90));
        image.setDotsPerMeterX(5669);
        image.setDotsPerMeterY(5669);
        paths << Store(image);
    }
    GifContents gif = Write(Request(paths));
    ASSERT_EQ(QSize(gif.width, gif.height), QSize(400, 401));
    const QImage& centred = gif.images.at(1).canvas;
    EXPECT_EQ(centred.pixelColor(99, 200).alpha(), 0);
    EXPECT_EQ(centred.pixelColor(100, 150), QColor(100, 10, 90));
    EXPECT_EQ(centred.pixelColor(299, 249), QColor(100, 10, 90));
    EXPECT_EQ(centred.pixelColor(299, 250).alpha(), 0);

    GifRequest request = Request({paths[0], paths[1]});
    request.fitMode = FrameFitMode::CropToSmallest;
    gif = Write(request);
    EXPECT_EQ(QSize(gif.width, gif.height), QSize(133, 100)) << "133.33 wide, rounded";
    EXPECT_EQ(gif.images.at(0).canvas.pixelColor(66, 50), QColor(200, 10, 90));
    EXPECT_EQ(gif.images.at(1).canvas.pixelColor(132, 99), QColor(100, 10, 90));
}

TEST_F(GifWriterTest, WiderFramesAreScaledOnTheirWay) {
    QStringList paths;
    for (const QSize size : {QSize(400, 300), QSize(200, 100)}) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor(size.width() / 2, 10, 90));
        paths << Store(image);
    }
    GifRequest request = Request(paths);
    request.maxWidth = 400;
    EXPECT_EQ(Write(request).width, 400);
    request.maxWidth = 101;
    GifContents gif = Write(request);
    ASSERT_EQ(QSize(gif.width, gif.height), QSize(101, 76)) << "75.75 high, rounded";
    const QImage& centred = gif.images.at(1).canvas;  // 50.5 x 25.25, rounded
    EXPECT_EQ(centred.pixelColor(24, 40).alpha(), 0);
    EXPECT_EQ(centred.pixelColor(25, 25), QColor(100, 10, 90));
    EXPECT_EQ(centred.pixelColor(75, 49), QColor(100, 10, 90));
    EXPECT_EQ(centred.pixelColor(76, 40).alpha(), 0);
    const auto estimate = EstimateGif(request, {});
    ASSERT_TRUE(estimate);
    EXPECT_EQ(QSize(estimate->width, estimate->height), QSize(101, 76));

    request.fitMode = FrameFitMode::CropToSmallest;
    gif = Write(request);
    EXPECT_EQ(QSize(gif.width, gif.height), QSize(101, 76));
    EXPECT_EQ(gif.images.at(1).canvas.pixelColor(100, 75), QColor(100, 10, 90));

    // What a scaled scene looks like: as the scene drawn small.
    request = Request({Store(Scene(300, 200, 1))});
    request.maxWidth = 150;
    EXPECT_GT(Psnr(Write(request).images.at(0).canvas, Scene(150, 100, 0).scaled(150, 100)), 20);
    request.colorLevels = 3;
    const QImage posterized = Write(request).images.at(0).canvas;
    for (int x = 0; x < 150; ++x) {
        EXPECT_EQ(posterized.pixelColor(x, 50).red() % 85, 0);
    }
}

TEST_F(GifWriterTest, ColorLevelsReduceBeforeThePalette) {
    GifRequest request = Request({Store(Scene(64, 48, 0))});
    request.colorLevels = 3;
    const GifContents gif = Write(request);
    for (int y = 0; y < 48; ++y) {
        for (int x = 0; x < 64; ++x) {
            const QColor color = gif.images.at(0).canvas.pixelColor(x, y);
            for (const int level : {color.red(), color.green(), color.blue()}) {
                ASSERT_TRUE(level == 0 || level == 85 || level == 170 || level == 255) << level;
            }
        }
    }
}

TEST_F(GifWriterTest, UnreadableFramesAreLeftOut) {
    const QString good = Store(FlatArt(24, 18, 0, false));
    const QString other = Store(FlatArt(24, 18, 2, false));
    const QString cut = Path(QStringLiteral("frame_cut.png"));
    const QString text = Path(QStringLiteral("frame_text.png"));
    QFile source(Store(Scene(24, 18, 0)));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QByteArray whole = source.readAll();
    for (const auto& [path, bytes] : {std::pair(cut, whole.left(whole.size() / 2)),
                                      std::pair(text, QByteArray("no picture"))}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    const GifContents gif =
        Write(Request({text, good, cut, Path(QStringLiteral("missing.png")), other}));
    ASSERT_EQ(gif.images.size(), 2U);
    EXPECT_EQ(gif.images[1].canvas, FlatArt(24, 18, 2, false));

    const auto result = WriteGif(Request({text, good, cut}), {}, {});
    ASSERT_TRUE(result);
    ASSERT_EQ(result->leftOut.size(), 2U);
    EXPECT_EQ(result->leftOut[0].file, text);
    EXPECT_TRUE(result->leftOut[1].message.contains(cut));
}

TEST_F(GifWriterTest, FailureAndStopLeaveTheOldFile) {
    const QString old = Path(QStringLiteral("out.gif"));
    QFile file(old);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("old");
    file.close();
    const auto stillOld = [&] {
        QFile again(old);
        return again.open(QIODevice::ReadOnly) && again.readAll() == "old" &&
               Leftovers() == QStringList{QStringLiteral("out.gif")};
    };
    const QString cut = Path(QStringLiteral("frame_cut.png"));
    ASSERT_TRUE(QFile::copy(Store(Scene(40, 30, 0)), cut));
    ASSERT_TRUE(QFile::resize(cut, 200));

    for (const QStringList& paths : {QStringList{}, QStringList{cut}}) {
        const auto result = WriteGif(Request(paths), {}, {});
        ASSERT_FALSE(result);
        EXPECT_EQ(result.failure().kind, Failure::Kind::Unreadable);
        EXPECT_TRUE(stillOld());
    }
    std::vector<QImage> frames;
    for (int step = 0; step < 12; ++step) {
        frames.push_back(Scene(200, 150, step * 5));
    }
    std::stop_source stop;
    const auto stopped = WriteGif(Request(Store(frames)), stop.get_token(), [&](int done, int) {
        if (done == 2) {
            stop.request_stop();
        }
    });
    ASSERT_FALSE(stopped);
    EXPECT_EQ(stopped.failure().kind, Failure::Kind::Stopped);
    EXPECT_TRUE(stillOld());

    const auto starved =
        WriteGif(Request(Store(frames)), {}, [](int, int) { throw std::bad_alloc(); });
    ASSERT_FALSE(starved);
    EXPECT_EQ(starved.failure().kind, Failure::Kind::TooLarge);
    EXPECT_TRUE(stillOld());

    GifRequest nowhere = Request({Store(frames[0])});
    nowhere.destination = Path(QStringLiteral("no/such/folder/out.gif"));
    const auto refused = WriteGif(nowhere, {}, {});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.failure().kind, Failure::Kind::NotWritable);
    EXPECT_TRUE(stillOld());

    const QString pipe = Path(QStringLiteral("pipe.gif"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    nowhere.destination = pipe;
    const auto onPipe = WriteGif(nowhere, {}, {});
    ASSERT_FALSE(onPipe);
    EXPECT_EQ(onPipe.failure().kind, Failure::Kind::NotWritable);
    EXPECT_FALSE(QFileInfo(pipe).isFile()) << "the pipe is still one";
}

TEST_F(GifWriterTest, HostileSizesAreRefused) {
    QImage wide(70000, 1, QImage::Format_RGB32);
    wide.fill(Qt::red);
    const auto result = WriteGif(Request({Store(wide)}), {}, {});
    ASSERT_FALSE(result);
    EXPECT_EQ(result.failure().kind, Failure::Kind::TooLarge);

    // A header that promises 60,000 x 60,000 pixels, its checksum right.
    QFile source(Store(Scene(8, 8, 0)));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    QByteArray bytes = source.readAll();
    const QByteArray header = QByteArray::fromHex("49484452 0000EA60 0000EA60 08060000 00");
    quint32 crc = 0xFFFFFFFFU;
    for (const char byte : header) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1U) != 0 ? crc >> 1U ^ 0xEDB88320U : crc >> 1U;
        }
    }
    crc = ~crc;
    bytes.replace(12, 17, header);
    for (int i = 0; i < 4; ++i) {
        bytes[29 + i] = static_cast<char>(crc >> (24U - 8U * static_cast<unsigned>(i)) & 0xFFU);
    }
    const QString bomb = Path(QStringLiteral("frame_bomb.png"));
    QFile file(bomb);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    const auto refused = WriteGif(Request({bomb}), {}, {});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.failure().kind, Failure::Kind::TooLarge);
}

}  // namespace
}  // namespace lumirra
