#include <gtest/gtest.h>

#include <QFontDatabase>
#include <cstdlib>
#include <limits>
#include <thread>
#include <vector>

#include "imaging/Caption.h"
#include "imaging/CaptionFonts.h"
#include "imaging/CropGeometry.h"
#include "imaging/CropScale.h"
#include "imaging/Render.h"

namespace lumirra::ImageTools {
namespace {

CaptionStyle Style(const QString& text, int position = 0) {
    CaptionStyle style;
    style.text = text;
    style.fontName = QStringLiteral("DejaVu Sans");
    style.fontSize = 40;
    style.position = static_cast<CaptionPosition>(position);
    return style;
}

/// Smallest rectangle around the pixels at least half opaque.
QRect Painted(const QImage& layer, int leastAlpha = 128) {
    QRect painted;
    for (int y = 0; y < layer.height(); ++y) {
        for (int x = 0; x < layer.width(); ++x) {
            if (qAlpha(layer.pixel(x, y)) >= leastAlpha) {
                painted |= QRect(x, y, 1, 1);
            }
        }
    }
    return painted;
}

QRect PaintedBy(const CaptionStyle& style, int width = 640, int height = 480) {
    return Painted(RenderTextLayer(width, height, style));
}

TEST(Caption, FivePositionsAndOffsets) {
    const QString text = QStringLiteral("HHH");
    const QRect bottomLeft = PaintedBy(Style(text, 0));
    const QRect bottomRight = PaintedBy(Style(text, 1));
    const QRect topLeft = PaintedBy(Style(text, 2));
    const QRect centre = PaintedBy(Style(text, 4));
    // The side bearings of an H, a tenth of the size, are all that keeps it from the edges.
    EXPECT_LE(bottomLeft.left(), 5);
    EXPECT_GE(bottomRight.right(), 634);
    EXPECT_EQ(bottomRight.top(), bottomLeft.top());
    EXPECT_LE(topLeft.top(), 15);
    EXPECT_GE(bottomLeft.bottom(), 464);
    EXPECT_EQ(PaintedBy(Style(text, 3)).topLeft(), QPoint(bottomRight.left(), topLeft.top()));
    EXPECT_NEAR(centre.left() + centre.right(), 639, 2);
    EXPECT_NEAR(centre.top() * 2, topLeft.top() + bottomLeft.top(), 2);
    CaptionStyle moved = Style(text, 0);
    moved.xOffset = 12;
    moved.yOffset = 20;
    EXPECT_EQ(PaintedBy(moved), bottomLeft.translated(12, -20));
    moved.yOffset = 1e9F;
    EXPECT_TRUE(PaintedBy(moved).isNull());
    EXPECT_TRUE(PaintedBy(Style(text, 5)).isNull());
    EXPECT_TRUE(PaintedBy(Style(text, -1)).isNull());
}

TEST(Caption, LinesBreakWrapAndCentre) {
    const QRect one = PaintedBy(Style(QStringLiteral("H"), 2));
    const QRect two = PaintedBy(Style(QStringLiteral("HHHHH\nH"), 2));
    const QRect wide = PaintedBy(Style(QStringLiteral("HHHHH"), 2));
    EXPECT_EQ(two.width(), wide.width());
    EXPECT_GT(two.height(), 2 * one.height());
    const QImage layer = RenderTextLayer(640, 480, Style(QStringLiteral("HHHHH\nH"), 2));
    const QRect second = Painted(layer.copy(0, wide.bottom() + 5, 640, 100));
    EXPECT_NEAR(second.left() + second.right(), wide.left() + wide.right(), 2);
    // One word wider than the frame, and many words.
    for (const QString& text : {QString(60, QChar(u'H')), QStringLiteral("HH ").repeated(20)}) {
        const QRect wrapped = PaintedBy(Style(text, 2), 300, 480);
        EXPECT_GT(wrapped.height(), 3 * one.height());
        EXPECT_LE(wrapped.right(), 299);
    }
    // Higher than the frame: the top shows the first line.
    const QString tall = QStringLiteral("H\n").repeated(30);
    EXPECT_EQ(PaintedBy(Style(tall, 2), 640, 100).top(), one.top());
}

TEST(Caption, RightToLeftTextIsShapedAndStaysAtItsPlace) {
    const QString word = QString::fromUtf8("سلام");
    const QRect shaped = PaintedBy(Style(word, 0));
    QString apart = word;
    for (qsizetype i = word.size() - 1; i > 0; --i) {
        apart.insert(i, QChar(0x200C));  // keeps neighbours from joining
    }
    EXPECT_FALSE(shaped.isNull());
    EXPECT_NE(shaped.width(), PaintedBy(Style(apart, 0)).width());
    EXPECT_LE(shaped.left(), 8);
    // The first letters give the direction: what stands first stands at the right.
    EXPECT_EQ(RenderTextLayer(640, 480, Style(word + QStringLiteral(" HHH"))),
              RenderTextLayer(640, 480, Style(QStringLiteral("HHH ") + word)));
}

TEST(Caption, EmojiKeepTheirColorsAndTheirWidthUnderTheOutline) {
    if (!QFontDatabase::families().contains(QStringLiteral("Noto Color Emoji"))) {
        FAIL() << "no colour emoji font is installed";
    }
    CaptionStyle style = Style(QString::fromUtf8("H 🎉"));
    const QRect plain = PaintedBy(style);
    style.strokeOn = true;
    const QRect outlined = PaintedBy(style);
    EXPECT_LE(std::abs(outlined.right() - plain.right()), 2);
    const QImage layer = RenderTextLayer(640, 480, style);
    EXPECT_EQ(Painted(layer), outlined);  // a second layout measures like the first
    int colored = 0;
    for (int y = outlined.top(); y <= outlined.bottom(); ++y) {
        for (int x = outlined.left(); x <= outlined.right(); ++x) {
            const QColor color = layer.pixelColor(x, y);
            colored += color.alpha() > 200 && color.saturation() > 120 ? 1 : 0;
        }
    }
    EXPECT_GT(colored, 100);
}

TEST(Caption, OpacityAndColorMix) {
    QImage black(300, 100, QImage::Format_RGBA8888);
    black.fill(Qt::black);
    CaptionStyle style = Style(QString(1, QChar(0x2588)));  // a full block
    const QPoint inside = PaintedBy(style, 300, 100).center();
    EXPECT_EQ(DrawTextOverlay(black, style, 1).pixelColor(inside), QColor(Qt::white));
    EXPECT_NEAR(DrawTextOverlay(black, style, 0.5F).pixelColor(inside).red(), 127.5, 1);
    style.color = {1, 0, 0, 0.5};
    EXPECT_NEAR(DrawTextOverlay(black, style, 0.5F).pixelColor(inside).red(), 63.75, 1.5);
    for (const float nothing : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_EQ(DrawTextOverlay(black, style, nothing), black);
    }
    style.fontSize = 0;
    EXPECT_EQ(DrawTextOverlay(black, style, 1), black);
    EXPECT_EQ(DrawTextOverlay(black, Style(QString()), 1), black);
    QImage clear(300, 100, QImage::Format_RGBA8888);
    clear.fill(Qt::transparent);
    EXPECT_TRUE(Painted(DrawTextOverlay(clear, Style(QStringLiteral("H")), 1), 1).isNull());
    EXPECT_TRUE(DrawTextOverlay(QImage(), style, 1).isNull());
}

TEST(Caption, ShadowLiesThreeRightAndThreeDown) {
    CaptionStyle style = Style(QString(1, QChar(0x2588)), 4);
    style.color = {1, 1, 1, 1};
    const QRect glyph = PaintedBy(style);
    style.shadowOn = true;
    const QImage layer = RenderTextLayer(640, 480, style);
    // Half of a blurred edge's darkness falls on the edge itself.
    const QPoint middle = glyph.center();
    const auto alphaAt = [&layer](int x, int y) { return qAlpha(layer.pixel(x, y)); };
    EXPECT_NEAR(
        (alphaAt(glyph.right() + 3, middle.y()) + alphaAt(glyph.right() + 4, middle.y())) / 2.0,
        127.5, 30);
    EXPECT_NEAR(
        (alphaAt(middle.x(), glyph.bottom() + 3) + alphaAt(middle.x(), glyph.bottom() + 4)) / 2.0,
        127.5, 30);
    EXPECT_EQ(layer.pixelColor(glyph.right() + 2, middle.y()).red(), 0);
    EXPECT_LT(alphaAt(glyph.left() - 2, middle.y()), 8);
    EXPECT_EQ(alphaAt(glyph.right() + 12, middle.y()), 0);
    EXPECT_EQ(layer.pixelColor(middle), QColor(Qt::white));
}

TEST(Caption, OutlineIsTwoPerCentOfTheSizeAndBlack) {
    CaptionStyle style = Style(QStringLiteral("H"), 4);
    style.fontSize = 200;  // a line of 4 pixels, half of it outside the glyph
    const QRect plain = PaintedBy(style);
    style.strokeOn = true;
    const QRect outlined = PaintedBy(style);
    EXPECT_NEAR(outlined.width() - plain.width(), 4, 1);
    const QImage layer = RenderTextLayer(640, 480, style);
    EXPECT_LT(layer.pixelColor(plain.left(), plain.center().y()).red(), 40);
    EXPECT_GT(layer.pixelColor(plain.left() + 8, plain.center().y()).red(), 250);
}

TEST(Caption, OverlayIsTheLayerBlendedOnAnyThread) {
    QImage base(640, 200, QImage::Format_RGBA8888);
    base.fill(QColor(20, 130, 90, 200));
    CaptionStyle style = Style(QString::fromUtf8("Ÿg سلام H\n2"), 3);
    style.shadowOn = style.strokeOn = true;
    style.xOffset = 30;
    const QImage layer = RenderTextLayer(640, 200, style);
    const QImage expected = DrawTextOverlay(base, style, 0.7F);
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 640; ++x) {
            const QColor over = layer.pixelColor(x, y);
            const double mix = over.alphaF() * 0.7;
            ASSERT_NEAR(expected.pixelColor(x, y).red(), 20 + (over.red() - 20) * mix, 1);
            ASSERT_EQ(expected.pixelColor(x, y).alpha(), 200);
        }
    }
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int k = 0; k < 5; ++k) {
                EXPECT_EQ(DrawTextOverlay(base, style, 0.7F, 1 + i), expected);
                EXPECT_FALSE(FontNameForIndex(12).isEmpty());
            }
        });
    }
}

TEST(Render, AnotherFontTakesThePlaceOfTheListsWithItsStyle) {
    QImage black(400, 120, QImage::Format_RGBA8888);
    black.fill(Qt::black);
    EffectSettings settings;
    settings.text = QStringLiteral("Hill");
    settings.fontSize = 60;
    const auto drawn = [&](const QString& font) {
        settings.otherFont = font;
        return RenderPreviewImage(black, settings);
    };
    const QImage mono = drawn(QStringLiteral("DejaVu Sans Mono"));
    EXPECT_NE(mono, drawn({}));
    EXPECT_NE(mono, drawn(QStringLiteral("DejaVu Sans Mono:Bold")));
    settings.fontIndex = 5;
    EXPECT_EQ(mono, drawn(QStringLiteral("DejaVu Sans Mono")));
}

EffectSettings Captioned() {
    EffectSettings settings;
    settings.text = QStringLiteral("Hi there");
    settings.fontSize = 30;
    settings.brightness = 0.1F;
    return settings;
}

QImage Gradient(int width, int height) {
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixelColor(x, y, QColor(x % 256, y % 256, 77, x < 20 ? 0 : 255));
        }
    }
    return image;
}

TEST(Render, VeilCoversWhatTheCropCutsOff) {
    EffectSettings settings;
    settings.customCropUnit = CropUnit::Pixels;
    settings.cropX = 40;
    settings.cropY = 10;
    settings.cropWidth = 100;
    settings.cropHeight = 50;
    const QImage image = Gradient(200, 120);
    const QImage preview = RenderPreviewImage(image, settings);
    for (int y = 0; y < 120; ++y) {
        for (int x = 0; x < 200; ++x) {
            const QColor before = image.pixelColor(x, y);
            const QColor after = preview.pixelColor(x, y);
            if (x >= 40 && x < 140 && y >= 60 && y < 110) {
                ASSERT_EQ(after, before);
            } else if (before.alpha() == 0) {
                ASSERT_EQ(after, QColor(255, 255, 255, 153));
            } else {
                ASSERT_NEAR(after.red(), before.red() * 0.4 + 255 * 0.6, 0.51);
                ASSERT_EQ(after.alpha(), 255);
            }
        }
    }
    EXPECT_EQ(RenderPreviewImage(image, EffectSettings()), image);
    EXPECT_TRUE(RenderPreviewImage(QImage(), settings).isNull());
}

TEST(Render, ACapturedPreviewEqualsTheRenderedFrame) {
    const QImage image = Gradient(301, 199);
    EffectSettings fractional = Captioned();
    fractional.cropX = 3.3F;
    fractional.cropY = 7.7F;
    fractional.cropWidth = 61.7F;
    fractional.cropHeight = 55.5F;
    EffectSettings automatic = Captioned();
    automatic.autoCropOn = true;
    automatic.aspectRatio = AspectRatio::ThreeToTwo;
    EffectSettings outside = Captioned();
    outside.customCropUnit = CropUnit::Pixels;
    outside.cropX = -10.5F;
    for (const EffectSettings& settings : {Captioned(), fractional, automatic, outside}) {
        const CaptureSettings capture{settings, 123, 77};
        const QImage preview = RenderPreviewImage(image, settings, 2);
        EXPECT_EQ(preview.size(), image.size());
        EXPECT_EQ(CropAndResizeCapturedFrame(preview, capture),
                  RenderFrameToSize(image, settings, 123, 77));
    }
}

TEST(Render, ScaledFramesHaveTheirComputedSize) {
    const QImage image = Gradient(301, 199);
    EffectSettings settings = Captioned();
    settings.autoCropOn = true;
    settings.aspectRatio = AspectRatio::ThreeToTwo;
    for (const float percent : {10.0F, 50.0F, 100.0F, 130.0F}) {
        const ImageSize size = ScaledFrameSize(301, 199, settings, percent);
        const QImage frame = RenderFrameScaled(image, settings, percent);
        EXPECT_EQ(frame.size(), QSize(static_cast<int>(size.width), static_cast<int>(size.height)));
    }
    EXPECT_TRUE(RenderFrameScaled(image, settings, 0).isNull());
    EXPECT_TRUE(RenderFrameToSize(QImage(), settings, 10, 10).isNull());
}

}  // namespace
}  // namespace lumirra::ImageTools
