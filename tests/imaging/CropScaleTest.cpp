#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "imaging/CropScale.h"
#include "imaging/kernels/Resample.h"

namespace lumirra::ImageTools {
namespace {

template <typename Color>
QImage Picture(int width, int height, const Color& colorAt) {
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixelColor(x, y, colorAt(x, y));
        }
    }
    return image;
}

/// Every pixel tells where it was.
QImage Coordinates(int width, int height) {
    return Picture(width, height, [](int x, int y) { return QColor(x % 256, y % 256, x / 256); });
}

TEST(CropImage, CutsFromTheBottomLeft) {
    const QImage image = Coordinates(100, 80);
    EXPECT_EQ(CropImage(image, {10, 8, 50, 40}), image.copy(10, 80 - 8 - 40, 50, 40));
    EXPECT_EQ(CropImage(image, {-10, -5, 50, 40}), image.copy(0, 80 - 35, 40, 35));
    EXPECT_EQ(CropImage(image, {90, 70, 50, 40}), image.copy(90, 0, 10, 10));
    for (const ImageRect rect :
         {ImageRect{0, 0, 0.9, 50}, ImageRect{0, 0, 50, 0.9}, ImageRect{100, 0, 50, 40},
          ImageRect{0, 81, 50, 40}, ImageRect{-60, 0, 50, 40}, ImageRect{0, 0, NAN, 40},
          ImageRect{NAN, 0, 20, 40}, ImageRect{}}) {
        EXPECT_EQ(CropImage(image, rect).size(), image.size());
    }
    EXPECT_EQ(CropImage(image, {-1e300, -1e300, 2e300, 2e300}).size(), image.size());
    EXPECT_TRUE(CropImage(QImage(), {0, 0, 5, 5}).isNull());
}

TEST(CropImage, FractionsKeepTheRoundedShare) {
    const QImage image = Coordinates(1000, 1000);
    const QImage cropped = CropImage(image, {0, 500.0 / 3, 1000, 2000.0 / 3});
    EXPECT_EQ(cropped, image.copy(0, 166, 1000, 667));
    EXPECT_EQ(CropImage(image, {999.7, 0, 1, 1}).size(), QSize(1, 1));
    // The two halves of an odd side overlap rather than lose the middle column.
    const QImage odd = Coordinates(101, 3);
    EXPECT_EQ(CropImage(odd, {0, 0, 50.5, 3}).width() + CropImage(odd, {50.5, 0, 50.5, 3}).width(),
              102);
}

TEST(DrawScaled, OneToOneIsACopyAndBadSizesGiveNothing) {
    const QImage image = Coordinates(33, 17);
    EXPECT_EQ(DrawScaled(image, 33.9, 17.2), image);
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double bad : {0.0, 0.99, -5.0, double{NAN}, kInfinity, 65536.0, 1e300}) {
        EXPECT_TRUE(DrawScaled(image, bad, 10).isNull());
        EXPECT_TRUE(DrawScaled(image, 10, bad).isNull());
    }
    EXPECT_TRUE(DrawScaled(image, 65535, 65535).isNull());
    EXPECT_TRUE(DrawScaled(QImage(), 10, 10).isNull());
    EXPECT_EQ(DrawScaled(image, 65535, 1).size(), QSize(65535, 1));
    EXPECT_EQ(DrawScaled(Coordinates(1, 1), 7, 5),
              Picture(7, 5, [](int, int) { return QColor(0, 0, 0); }));
}

TEST(DrawScaled, ChequerboardAtHalfSizeIsMidGrey) {
    const QImage board = Picture(128, 96, [](int x, int y) {
        return (x + y) % 2 == 0 ? QColor(Qt::white) : QColor(Qt::black);
    });
    const QImage half = DrawScaled(board, 64, 48);
    for (int y = 0; y < 48; ++y) {
        for (int x = 0; x < 64; ++x) {
            ASSERT_NEAR(half.pixelColor(x, y).red(), 127.5, 2) << x << ' ' << y;
        }
    }
}

/// The mean of the source area under a target pixel, in plain doubles.
double AreaMean(const QImage& image, double x0, double x1, double y0, double y1) {
    double sum = 0;
    for (int y = static_cast<int>(y0); y < std::ceil(y1); ++y) {
        for (int x = static_cast<int>(x0); x < std::ceil(x1); ++x) {
            const double w = std::min(x + 1.0, x1) - std::max<double>(x, x0);
            const double h = std::min(y + 1.0, y1) - std::max<double>(y, y0);
            sum += w * h * image.pixelColor(x, y).green();
        }
    }
    return sum / ((x1 - x0) * (y1 - y0));
}

TEST(DrawScaled, SmoothPicturesFollowTheAreaMean) {
    const QImage image = Picture(211, 157, [](int x, int y) {
        return QColor(0, static_cast<int>(127.5 + 120 * std::sin(x / 25.0) * std::cos(y / 21.0)),
                      9);
    });
    for (const QSize size : {QSize(100, 70), QSize(37, 157), QSize(211, 31), QSize(60, 300),
                             QSize(500, 400), QSize(211, 158)}) {
        const QImage scaled = DrawScaled(image, size.width(), size.height());
        const double sx = 211.0 / size.width();
        const double sy = 157.0 / size.height();
        // The border mixes in its own continuation, so it is left out.
        for (int y = size.height() / 8; y < size.height() * 7 / 8; ++y) {
            for (int x = size.width() / 8; x < size.width() * 7 / 8; ++x) {
                ASSERT_NEAR(scaled.pixelColor(x, y).green(),
                            AreaMean(image, x * sx, (x + 1) * sx, y * sy, (y + 1) * sy), 4)
                    << x << ' ' << y << " of " << size.width();
            }
        }
    }
}

TEST(DrawScaled, FlatStaysFlatAndEdgesHardlyRing) {
    const QImage flat = Picture(50, 40, [](int, int) { return QColor(201, 3, 77, 140); });
    const QImage step = Picture(
        400, 8, [](int x, int) { return x < 200 ? QColor(50, 50, 50) : QColor(200, 200, 200); });
    for (const int width : {1, 7, 49, 51, 333}) {
        const QImage scaled = DrawScaled(flat, width, 23);
        EXPECT_EQ(scaled, flat.scaled(width, 23)) << width;
    }
    const QImage small = DrawScaled(step, 150, 8);
    for (int x = 0; x < 150; ++x) {
        EXPECT_GE(small.pixelColor(x, 4).red(), 50 - 8);
        EXPECT_LE(small.pixelColor(x, 4).red(), 200 + 8);
    }
}

TEST(DrawScaled, TransparencyLeavesNoFringe) {
    // Red beside transparent green, scaled both ways: no green and no dark in what is visible.
    const QImage image = Picture(
        60, 60, [](int x, int) { return x < 30 ? QColor(255, 0, 0) : QColor(0, 255, 0, 0); });
    for (const int side : {13, 29, 151}) {
        const QImage scaled = DrawScaled(image, side, side);
        for (int x = 0; x < side; ++x) {
            const QColor color = scaled.pixelColor(x, side / 2);
            if (color.alpha() == 0) {
                EXPECT_EQ(scaled.pixel(x, side / 2), 0U);
            } else {
                EXPECT_GE(color.red(), 254) << x;
                EXPECT_LE(color.green(), 1) << x;
            }
        }
        EXPECT_EQ(scaled.pixelColor(side - 1, 0).alpha(), 0);
    }
}

TEST(Resample, VectorAndPlainLoopsAgreeBitForBit) {
    const QImage image = Picture(41, 9, [](int x, int y) {
        return QColor(x * 37 % 256, y * 91 % 256, x * y * 17 % 256, (x * 13 + y * 5) % 256);
    });
    for (int n = 1; n <= 40; ++n) {
        const ResampleWeights down = MakeResampleWeights(9, 2);
        const ResampleWeights across = MakeResampleWeights(n, n / 3 + 2);
        std::vector<const std::uint8_t*> rows;
        for (int y = 0; y < 9; ++y) {
            rows.push_back(image.constScanLine(y) + 4);  // the first pixel is not the row's first
        }
        for (const bool opaque : {false, true}) {
            std::vector<float> fast(static_cast<std::size_t>(n) * 4 + 4, -1.0F);
            std::vector<float> plain = fast;
            const auto& span = down.spans[0];
            MixRows(rows.data(), down.weights.data(), span.count, opaque, fast.data(), n);
            MixRowsPlainly(rows.data(), down.weights.data(), span.count, opaque, plain.data(), n);
            EXPECT_EQ(fast, plain) << n;
            std::vector<std::uint8_t> fastOut(across.spans.size() * 4 + 4, 99);
            std::vector<std::uint8_t> plainOut = fastOut;
            MixAlongRow(fast.data(), across, fastOut.data());
            MixAlongRowPlainly(plain.data(), across, plainOut.data());
            EXPECT_EQ(fastOut, plainOut) << n;
        }
    }
}

TEST(DrawScaled, ThreadsDoNotChangePixels) {
    const QImage image = Coordinates(203, 407);
    for (const QSize size : {QSize(97, 111), QSize(401, 500)}) {
        const QImage alone = DrawScaled(image, size.width(), size.height(), 1);
        for (const int threads : {2, 3, 8}) {
            EXPECT_EQ(DrawScaled(image, size.width(), size.height(), threads), alone);
        }
    }
}

TEST(CropAndResizeCapturedFrame, CropsThenScales) {
    const QImage image = Coordinates(120, 80);
    CaptureSettings settings;
    settings.effects.customCropUnit = CropUnit::Pixels;
    settings.effects.cropX = 20;
    settings.effects.cropY = 10;
    settings.effects.cropWidth = 60;
    settings.effects.cropHeight = 30;
    settings.width = 60;
    settings.height = 30;
    EXPECT_EQ(CropAndResizeCapturedFrame(image, settings), image.copy(20, 40, 60, 30));
    settings.width = 0;
    EXPECT_TRUE(CropAndResizeCapturedFrame(image, settings).isNull());
}

}  // namespace
}  // namespace lumirra::ImageTools
