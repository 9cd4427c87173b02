#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "imaging/Effects.h"

namespace lumirra::ImageTools {
namespace {

struct Statistics {
    std::array<double, 3> mean{};
    double deviation = 0;   // of the luminance
    double saturation = 0;  // mean of (max - min) / max
    double black = 255;     // luminance under which one pixel in a thousand lies
    bool grey = true;
};

Statistics Measure(const QImage& image) {
    Statistics s;
    double sum = 0;
    double squares = 0;
    std::map<int, int> histogram;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const uchar* c = image.constScanLine(y) + 4 * x;
            const double luminance = 0.2125 * c[0] + 0.7154 * c[1] + 0.0721 * c[2];
            sum += luminance;
            squares += luminance * luminance;
            ++histogram[static_cast<int>(luminance)];
            for (std::size_t i = 0; i < 3; ++i) {
                s.mean[i] += c[i];
            }
            const auto [low, high] = std::minmax({c[0], c[1], c[2]});
            s.saturation += high == 0 ? 0 : static_cast<double>(high - low) / high;
            s.grey = s.grey && low == high;
        }
    }
    const double count = static_cast<double>(image.width()) * image.height();
    s.deviation = std::sqrt(squares / count - sum / count * (sum / count));
    s.saturation /= count;
    for (double& mean : s.mean) {
        mean /= count;
    }
    double below = 0;
    for (const auto& [luminance, pixels] : histogram) {
        below += pixels;
        if (below > count / 1000) {
            s.black = luminance;
            break;
        }
    }
    return s;
}

double Share(const Statistics& s, std::size_t channel) {
    return s.mean[channel] / (s.mean[0] + s.mean[1] + s.mean[2]);
}

/// Share of the channels that had room to both ends before and lie at one of them now.
double NewlyClipped(const QImage& before, const QImage& after) {
    qsizetype clipped = 0;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < 4 * before.width(); ++x) {
            const int old = before.constScanLine(y)[x];
            const int now = after.constScanLine(y)[x];
            clipped += old > 3 && old < 252 && (now == 0 || now == 255) ? 1 : 0;
        }
    }
    return static_cast<double>(clipped) / (3.0 * before.width() * before.height());
}

class PhotoLooks : public testing::Test {
  protected:
    void SetUp() override { ASSERT_FALSE(source_.isNull()) << "the photograph is missing"; }
    static void SetUpTestSuite() {
        source_ = QImage(QStringLiteral(LUMIRRA_MEDIA_DIR "/photo.bmp"))
                      .convertToFormat(QImage::Format_RGBA8888);
        if (source_.isNull()) {
            return;
        }
        for (const QString& name : PhotoEffectNames()) {
            pictures_[name] = ApplyColorEffect(source_, name);
            looks_[name] = Measure(pictures_[name]);
        }
        plain_ = Measure(source_);
    }
    static const Statistics& Of(const char* name) { return looks_[QLatin1String(name)]; }

    inline static QImage source_;
    inline static Statistics plain_;
    inline static std::map<QString, QImage> pictures_;
    inline static std::map<QString, Statistics> looks_;
};

TEST_F(PhotoLooks, AreWorthyOfTheirNames) {
    for (const char* name : {"Mono", "Noir", "Tonal"}) {
        EXPECT_TRUE(Of(name).grey) << name;
    }
    EXPECT_LT(Of("Mono").deviation, 0.9 * plain_.deviation);
    EXPECT_GT(Of("Noir").deviation, 1.15 * plain_.deviation);
    EXPECT_NEAR(Of("Tonal").deviation, plain_.deviation, 0.05 * plain_.deviation);
    EXPECT_LT(Of("Fade").saturation, 0.7 * plain_.saturation);
    EXPECT_LT(Of("Fade").deviation, 0.85 * plain_.deviation);
    EXPECT_GT(Of("Fade").black, plain_.black + 20);
    EXPECT_GT(Of("Chrome").saturation, 1.15 * plain_.saturation);
    EXPECT_GT(Share(Of("Process"), 2), Share(plain_, 2) + 0.02);
    EXPECT_GT(Share(Of("Transfer"), 0), Share(plain_, 0) + 0.02);
    EXPECT_GT(Of("Instant").mean[0] - Of("Instant").mean[2], plain_.mean[0] - plain_.mean[2] + 5);
    EXPECT_GT(Of("Instant").black, plain_.black + 20);
}

TEST_F(PhotoLooks, DifferFromEachOtherAndClipNothing) {
    for (const auto& [name, picture] : pictures_) {
        EXPECT_LE(NewlyClipped(source_, picture), 5e-4) << name.toStdString();
        for (const auto& [other, otherPicture] : pictures_) {
            if (other == name) {
                break;
            }
            double difference = 0;
            for (int y = 0; y < picture.height(); ++y) {
                const uchar* a = picture.constScanLine(y);
                const uchar* b = otherPicture.constScanLine(y);
                for (int x = 0; x < 4 * picture.width(); ++x) {
                    difference += std::abs(a[x] - b[x]);
                }
            }
            difference /= 3.0 * picture.width() * picture.height();
            EXPECT_GT(difference, 5) << name.toStdString() << " and " << other.toStdString();
        }
    }
}

TEST_F(PhotoLooks, GreysRiseWithoutBands) {
    QImage ramp(256, 1, QImage::Format_RGBA8888);
    for (int x = 0; x < 256; ++x) {
        ramp.setPixelColor(x, 0, QColor(x, x, x));
    }
    for (const QString& name : PhotoEffectNames()) {
        const QImage result = ApplyColorEffect(ramp, name);
        for (int i = 4; i < 4 * 256; ++i) {
            const int step = result.constScanLine(0)[i] - result.constScanLine(0)[i - 4];
            EXPECT_GE(step, 0) << name.toStdString() << " at " << i / 4;
            EXPECT_LE(step, 2) << name.toStdString() << " at " << i / 4;
        }
    }
}

TEST_F(PhotoLooks, SkinAndSkyRemainWhatTheyAre) {
    QImage colors(7, 1, QImage::Format_RGBA8888);
    int x = 0;
    for (const QRgb skin : {0xFFE0C4U, 0xF1C29BU, 0xE0AC7DU, 0xC6865AU, 0x8D5532U, 0x50301EU}) {
        colors.setPixelColor(x++, 0, QColor(skin));
    }
    colors.setPixelColor(x, 0, QColor(100, 160, 230));
    for (const char* name : {"Chrome", "Fade", "Instant", "Process", "Transfer"}) {
        const QImage result = ApplyColorEffect(colors, QLatin1String(name));
        for (int i = 0; i < x; ++i) {
            const QColor color = result.pixelColor(i, 0);
            EXPECT_GT(color.red(), color.green()) << name << ", skin " << i;
            EXPECT_GT(color.red(), color.blue()) << name << ", skin " << i;
        }
        const QColor sky = result.pixelColor(x, 0);
        EXPECT_GT(sky.blue(), sky.green()) << name;
        EXPECT_GT(sky.green(), sky.red()) << name;
    }
}

}  // namespace
}  // namespace lumirra::ImageTools
