#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "EffectOracle.h"
#include "imaging/Adjustments.h"
#include "imaging/Effects.h"
#include "imaging/Render.h"
#include "imaging/kernels/ColorPass.h"

namespace lumirra::ImageTools {
namespace {

using oracle::TestPicture;

/// Gives the share of undecided pixels.
double ExpectChain(const QImage& image, const EffectSettings& settings) {
    return oracle::ExpectInside(ApplyEffectChain(image, settings), oracle::Chain(image, settings));
}

TEST(EffectChain, ResetValuesGiveTheSamePixels) {
    const QImage image = TestPicture(37, 11, true);
    EffectSettings settings;
    settings.hue = -720;
    EXPECT_EQ(ApplyEffectChain(image, settings).constBits(), image.constBits());
    settings.colorEffectOn = true;  // without a name, and with one that does not exist
    EXPECT_EQ(ApplyEffectChain(image, settings), image);
    settings.colorEffectName = QStringLiteral("chrome");
    EXPECT_EQ(ApplyEffectChain(image, settings), image);
    EXPECT_TRUE(ApplyEffectChain({}, settings).isNull());

    QImage other = image.convertToFormat(QImage::Format_ARGB32);
    other.setDevicePixelRatio(2);
    const QImage result = ApplyEffectChain(other, {});
    EXPECT_EQ(result, image);
    EXPECT_EQ(result.devicePixelRatio(), 1);
}

TEST(EffectChain, EachAdjustmentByItsFormula) {
    const QImage image = TestPicture(67, 21, true);
    const auto expect = [&](float EffectSettings::*field, float value,
                            QImage (*operation)(const QImage&, float)) {
        EffectSettings settings;
        settings.*field = value;
        SCOPED_TRACE(value);
        EXPECT_LE(oracle::ExpectInside(operation(image, value), oracle::Chain(image, settings)),
                  0.001);
    };
    for (const float value : {-1.0F, -0.3F, 0.2F, 1.0F}) {
        expect(&EffectSettings::brightness, value, AdjustBrightness);
    }
    for (const float value : {0.0F, 0.5F, 4.0F}) {
        expect(&EffectSettings::contrast, value, AdjustContrast);
        expect(&EffectSettings::saturation, value / 2, AdjustSaturation);
    }
    for (const float value : {-4.0F, 0.7F, 4.0F}) {
        expect(&EffectSettings::exposure, value, AdjustExposure);
    }
    for (const float value : {0.0F, 0.01F, 0.1F, 0.45F, 2.2F, 3.0F, 20.0F}) {
        expect(&EffectSettings::gamma, value, AdjustGamma);
    }
    for (const float value : {-180.0F, -60.0F, 33.0F, 180.0F, 400.0F}) {
        expect(&EffectSettings::hue, value, AdjustHue);
    }
}

TEST(EffectChain, HueTurnsRedTowardsYellowAndGreen) {
    QImage red(1, 1, QImage::Format_RGBA8888);
    red.fill(QColor(200, 40, 40));
    const int hue = QColor(AdjustHue(red, 40).pixel(0, 0)).hsvHue();
    EXPECT_GT(hue, 20);
    EXPECT_LT(hue, 70);
    const int further = QColor(AdjustHue(red, 110).pixel(0, 0)).hsvHue();
    EXPECT_GT(further, 80);
    EXPECT_LT(further, 150);
}

EffectSettings RandomSettings(std::mt19937& random) {
    // A third of the values at the ends of their controls.
    const auto value = [&random](float low, float high) {
        const float part = static_cast<float>(random() % 1501) / 1000 - 0.25F;
        return low + (high - low) * std::clamp(part, 0.0F, 1.0F);
    };
    const auto chance = [&random] { return random() % 2 == 0; };
    EffectSettings s;
    s.brightness = chance() ? value(-1, 1) : 0;
    s.contrast = chance() ? value(0, 4) : 1;
    s.saturation = chance() ? value(0, 2) : 1;
    s.exposure = chance() ? value(-4, 4) : 0;
    s.gamma = chance() ? value(0.1F, 3) : 1;
    s.hue = chance() ? value(-180, 180) : 0;
    s.colorEffectOn = chance();
    s.colorEffectName = PhotoEffectNames()[static_cast<int>(random() % 8)];
    s.cartoonBlur = value(0, 3);
    s.cartoonThreshold = value(0.05F, 1);
    s.cartoonQuantization = std::floor(value(1, 20));
    s.sketchIntensity = value(0.05F, 1);
    s.sketchEdge = value(0.2F, 4);
    s.vignetteOn = chance();
    s.vignetteRadius = value(-0.25F, 0.25F);
    return s;
}

TEST(EffectChain, StaysWithinTheStepsOneByOne) {
    std::mt19937 random(7);
    double undecided = 0;
    for (int run = 0; run < 150; ++run) {
        SCOPED_TRACE(run);
        const EffectSettings settings = RandomSettings(random);
        undecided += ExpectChain(TestPicture(53, 19, run % 2 == 0, random()), settings);
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_LE(undecided / 150, 1e-4);
}

TEST(EffectChain, CartoonAndSketchDifferOnlyOnTheThreshold) {
    std::mt19937 random(11);
    double undecided = 0;
    for (int run = 0; run < 60; ++run) {
        SCOPED_TRACE(run);
        EffectSettings settings = RandomSettings(random);
        settings.cartoonOn = run % 3 != 0;
        settings.sketchOn = run % 3 != 1;
        const QImage image =
            TestPicture(1 + static_cast<int>(random() % 40), 1 + static_cast<int>(random() % 24),
                        run % 2 == 0, random());
        undecided += ExpectChain(image, settings);
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_LE(undecided / 60, 0.02);
}

TEST(EffectChain, LargeBlurAndEdgeCases) {
    EffectSettings settings;
    settings.cartoonOn = true;
    settings.cartoonBlur = 10;
    settings.cartoonThreshold = 0.1F;
    EXPECT_LE(ExpectChain(TestPicture(25, 18, false), settings), 0.01);
    EXPECT_LE(ExpectChain(TestPicture(25, 18, true), settings), 0.01);
    EXPECT_LE(ExpectChain(TestPicture(1, 1, false), settings), 0.01);
    settings.cartoonBlur = 0;
    EXPECT_LE(ExpectChain(TestPicture(33, 9, true), settings), 0.01);
    settings.cartoonThreshold = 0;  // every magnitude reaches it
    EXPECT_EQ(ApplyEffectChain(TestPicture(9, 9, false), settings).pixel(4, 4), qRgb(0, 0, 0));
}

TEST(EffectChain, InvisibleColorsDoNotBleed) {
    QImage image(40, 40, QImage::Format_RGBA8888);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            image.setPixel(x, y, x < 20 ? qRgba(200, 100, 50, 255) : qRgba(0, 255, 0, 0));
        }
    }
    const QImage result = ApplyCartoon(image, 3, 0.05F, 255);
    for (int x = 0; x < 40; ++x) {
        EXPECT_EQ(qAlpha(result.pixel(x, 20)), x < 20 ? 255 : 0);
    }
    EXPECT_EQ(result.pixel(19, 20), qRgba(200, 100, 50, 255));
    EXPECT_EQ(qAlpha(ApplySketch(image, 0.5F, 1).pixel(30, 20)), 255);
}

TEST(EffectChain, ThreadsDoNotChangeThePixels) {
    std::mt19937 random(5);
    for (const auto& [cartoon, sketch] : {std::pair(false, false), {true, false}, {true, true}}) {
        EffectSettings settings = RandomSettings(random);
        settings.cartoonOn = cartoon;
        settings.sketchOn = sketch;
        settings.vignetteOn = true;
        const QImage image = TestPicture(61, 131, true);
        const QImage one = ApplyEffectChain(image, settings, 1);
        for (const int threads : {2, 3, 8}) {
            EXPECT_EQ(ApplyEffectChain(image, settings, threads), one) << threads;
        }
    }
}

TEST(EffectChain, ValuesThatAreNoNumbersDoNoHarm) {
    const QImage image = TestPicture(19, 7, true);
    constexpr std::array kFields = {&EffectSettings::brightness,
                                    &EffectSettings::contrast,
                                    &EffectSettings::saturation,
                                    &EffectSettings::exposure,
                                    &EffectSettings::gamma,
                                    &EffectSettings::hue,
                                    &EffectSettings::cartoonBlur,
                                    &EffectSettings::cartoonThreshold,
                                    &EffectSettings::cartoonQuantization,
                                    &EffectSettings::sketchIntensity,
                                    &EffectSettings::sketchEdge,
                                    &EffectSettings::vignetteRadius};
    constexpr float kInfinite = std::numeric_limits<float>::infinity();
    for (std::size_t i = 0; i < kFields.size(); ++i) {
        for (const float value : {std::numeric_limits<float>::quiet_NaN(), kInfinite, -kInfinite,
                                  std::numeric_limits<float>::max(),
                                  std::numeric_limits<float>::denorm_min(), -1e30F}) {
            EffectSettings settings;
            settings.cartoonOn = i >= 6 && i <= 8;
            settings.sketchOn = i == 9 || i == 10;
            settings.vignetteOn = true;
            settings.*kFields[i] = value;
            const QImage result = ApplyEffectChain(image, settings);
            EXPECT_EQ(result.size(), image.size());
            if (i < 6 && std::isnan(value)) {
                EXPECT_EQ(result, ApplyVignette(image, 0));
            }
        }
    }
    EXPECT_EQ(AdjustBrightness(image, kInfinite), AdjustBrightness(image, 1));
}

TEST(EffectChain, PosterizeByItsFormula) {
    const QImage image = TestPicture(300, 3, true);
    for (const int levels : {0, 1, 2, 3, 6, 100, 255, 1 << 30}) {
        const QImage result = Posterize(image, levels);
        for (int x = 0; x < 4 * image.width(); ++x) {
            const double c = image.constScanLine(1)[x];
            const double step = levels == 0 ? 0 : std::floor(c / 255 * levels + 0.5) / levels;
            const double expected = x % 4 == 3 ? c : 255 * step;
            ASSERT_NEAR(result.constScanLine(1)[x], expected, 0.501) << levels;
        }
    }
}

}  // namespace
}  // namespace lumirra::ImageTools
