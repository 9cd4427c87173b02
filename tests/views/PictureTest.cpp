#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <QVideoFrame>
#include <QVideoFrameFormat>
#include <cmath>

#include "views/ScreenPicture.h"
#include "views/controls/CaptionField.h"
#include "views/controls/ColorWell.h"
#include "views/panel/Film.h"
#include "views/panel/PlayerView.h"
#include "views/panel/VideoImageView.h"
#include "views/panel/VideoPanel.h"
#include "views/player/VideoFramePixels.h"

namespace lumirra {
namespace {

/// Red grows to the right, green downwards; every pixel differs from its neighbours.
QImage Ramp(int width, int height) {
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixelColor(x, y,
                                QColor(255 * x / std::max(1, width - 1),
                                       255 * y / std::max(1, height - 1), (x + y) % 2 * 40));
        }
    }
    return image;
}

int LargestDifference(const QImage& a, const QImage& b) {
    int largest = a.size() == b.size() ? 0 : 256;
    for (int y = 0; largest < 256 && y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            for (const int d : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q),
                                qAlpha(p) - qAlpha(q)}) {
                largest = std::max(largest, std::abs(d));
            }
        }
    }
    return largest;
}

TEST(ScreenPicture, AWindowShowsThePartItLiesOn) {
    const QImage image = Ramp(97, 61);
    for (const bool smooth : {false, true}) {
        for (const QSize size : {QSize(41, 30), QSize(97, 61), QSize(388, 244)}) {
            const QRect picture(QPoint(-13, -7), size);
            const QImage whole = ScaleForScreen(image, picture, picture, smooth).image;
            const QRect window(0, 0, 25, 20);
            const ScreenPicture part = ScaleForScreen(image, picture, window, smooth);
            EXPECT_LE(LargestDifference(part.image, whole.copy(13, 7, 25, 20)), 1);
            EXPECT_TRUE(part.opaque);
        }
    }
    EXPECT_EQ(
        LargestDifference(ScaleForScreen(image, image.rect(), image.rect(), false).image, image),
        0);
}

TEST(ScreenPicture, QuickAndSmoothAgreeInThePlaceOfThings) {
    const QImage image = Ramp(640, 360);
    const QRect picture(0, 0, 200, 120);
    const QImage quick = ScaleForScreen(image, picture, picture, false).image;
    const QImage smooth = ScaleForScreen(image, picture, picture, true).image;
    // The checkered blue aside, a shift by one output pixel would be more than this.
    for (const QPoint at : {QPoint(0, 0), QPoint(100, 60), QPoint(199, 119), QPoint(37, 80)}) {
        EXPECT_NEAR(quick.pixelColor(at).red(), smooth.pixelColor(at).red(), 1);
        EXPECT_NEAR(quick.pixelColor(at).green(), smooth.pixelColor(at).green(), 2);
    }
}

TEST(ScreenPicture, KnowsTransparency) {
    QImage image = Ramp(20, 20);
    image.setPixelColor(3, 3, QColor(255, 0, 0, 128));
    const ScreenPicture seen = ScaleForScreen(image, image.rect(), image.rect(), false);
    EXPECT_FALSE(seen.opaque);
    EXPECT_EQ(seen.image.pixelColor(3, 3).alpha(), 128);
    EXPECT_NEAR(seen.image.pixelColor(3, 3).red(), 255, 1);
    EXPECT_TRUE(ScaleForScreen(image, image.rect(), QRect(8, 8, 9, 9), true).opaque);
    const ScreenPicture beside = ScaleForScreen(image, image.rect(), QRect(30, 30, 5, 5), false);
    EXPECT_EQ(beside.image.pixelColor(2, 2).alpha(), 0);
    EXPECT_TRUE(ScaleForScreen(QImage(), {}, QRect(0, 0, 5, 5), true).image.isNull());
}

TEST(VideoImageView, KeepsProportionsAndSaysWhatIsWrong) {
    VideoImageView view;
    view.resize(400, 300);
    QSignalSpy states(&view, &VideoImageView::StateChanged);
    EXPECT_FALSE(view.HasPictureObject());
    view.SetImage(QImage());
    EXPECT_TRUE(view.HasPictureObject());
    EXPECT_TRUE(view.IsEmptyState());
    view.SetProblem(QStringLiteral("clip.mp4 cannot be read"));
    EXPECT_FALSE(view.IsEmptyState());
    view.SetProblem({});
    view.SetImage(Ramp(200, 50));
    EXPECT_EQ(view.PictureRect(), QRectF(0, 100, 400, 100));
    EXPECT_EQ(states.count(), 4);
    view.SetImage(Ramp(100, 100));
    EXPECT_EQ(view.PictureRect(), QRectF(50, 0, 300, 300));
}

TEST(VideoPanel, ZoomsOnlyWithAPictureObjectAndPansByDragging) {
    QWidget box;
    box.resize(410, 310);
    VideoPanel panel(&box);
    auto* view = new VideoImageView(&panel);
    auto* player = new PlayerView(&panel);
    panel.SetViews(view, player);
    panel.setGeometry(5, 5, 400, 300);
    player->hide();
    box.show();
    panel.ZoomIn();
    EXPECT_EQ(view->geometry(), QRect(0, 0, 400, 300));
    view->SetImage(Ramp(64, 48));
    for (int i = 0; i < 8; ++i) {
        panel.ZoomIn();
    }
    const QRect before = view->geometry();
    EXPECT_GT(before.width(), 800);
    QTest::mousePress(&panel, Qt::LeftButton, {}, QPoint(200, 150));
    QTest::mouseMove(&panel, QPoint(230, 140));
    EXPECT_EQ(view->pos(), before.topLeft() + QPoint(30, -10));
    QTest::mouseMove(&panel, QPoint(1000, 140));
    EXPECT_EQ(view->pos(), before.topLeft() + QPoint(30, -10)) << "outside the box";
    QTest::mouseRelease(&panel, Qt::LeftButton, {}, QPoint(230, 140));
    panel.ResetZoom();
    EXPECT_EQ(view->geometry(), QRect(0, 0, 400, 300));
}

struct YuvCase {
    QVideoFrameFormat::PixelFormat format;
    int bits;
    bool paired;  ///< U and V share a plane
    QVideoFrameFormat::ColorSpace space;
    double kr, kb;
    bool full;
};

/// A frame of one colour, its planes filled from the formula in plain doubles.
QVideoFrame OneColor(const YuvCase& wanted, const QColor& color, QSize size) {
    const double kg = 1 - wanted.kr - wanted.kb;
    const double y = wanted.kr * color.redF() + kg * color.greenF() + wanted.kb * color.blueF();
    const double u = (color.blueF() - y) / (2 * (1 - wanted.kb));
    const double v = (color.redF() - y) / (2 * (1 - wanted.kr));
    const bool full = wanted.full;
    const double values[] = {full ? 255 * y : 16 + 219 * y, 128 + (full ? 255 : 224) * u,
                             128 + (full ? 255 : 224) * v};
    QVideoFrameFormat format(size, wanted.format);
    format.setColorSpace(wanted.space);
    format.setColorRange(full ? QVideoFrameFormat::ColorRange_Full
                              : QVideoFrameFormat::ColorRange_Video);
    QVideoFrame frame(format);
    EXPECT_TRUE(frame.map(QVideoFrame::WriteOnly));
    const int bytes = wanted.bits > 8 ? 2 : 1;
    const double scale = wanted.bits == 8 ? 1 : 256;  // 10 bits sit high in 16
    for (int plane = 0; plane < frame.planeCount(); ++plane) {
        const int samples = frame.mappedBytes(plane) / bytes;
        for (int i = 0; i < samples; ++i) {
            const int component = plane == 0 ? 0 : wanted.paired ? 1 + i % 2 : plane;
            const int sample = static_cast<int>(std::lround(values[component] * scale));
            if (bytes == 1) {
                frame.bits(plane)[i] = static_cast<uchar>(sample);
            } else {
                reinterpret_cast<quint16*>(frame.bits(plane))[i] = static_cast<quint16>(sample);
            }
        }
    }
    frame.unmap();
    return frame;
}

TEST(VideoFramePixels, EveryLayoutMatrixAndRangeGivesTheColorBack) {
    using F = QVideoFrameFormat;
    const YuvCase cases[] = {
        {F::Format_YUV420P, 8, false, F::ColorSpace_BT601, 0.299, 0.114, false},
        {F::Format_YUV420P, 8, false, F::ColorSpace_BT709, 0.2126, 0.0722, true},
        {F::Format_NV12, 8, true, F::ColorSpace_BT709, 0.2126, 0.0722, false},
        {F::Format_NV12, 8, true, F::ColorSpace_Undefined, 0.299, 0.114, false},
        {F::Format_P010, 10, true, F::ColorSpace_BT2020, 0.2627, 0.0593, false},
    };
    for (const YuvCase& wanted : cases) {
        for (const QColor color : {QColor(220, 40, 30), QColor(20, 130, 240), QColor(0, 0, 0),
                                   QColor(255, 255, 255), QColor(90, 200, 60)}) {
            const QVideoFrame frame = OneColor(wanted, color, QSize(34, 18));
            for (const QSize size : {QSize(34, 18), QSize(11, 7)}) {
                QImage image;
                ASSERT_TRUE(FrameToImage(frame, {}, size, image));
                ASSERT_EQ(image.size(), size);
                for (const QPoint at :
                     {QPoint(0, 0), QPoint(size.width() - 1, size.height() - 1)}) {
                    const QColor got = image.pixelColor(at);
                    EXPECT_NEAR(got.red(), color.red(), 3) << int(wanted.format);
                    EXPECT_NEAR(got.green(), color.green(), 3) << int(wanted.format);
                    EXPECT_NEAR(got.blue(), color.blue(), 3) << int(wanted.format);
                }
            }
        }
    }
}

/// Pictures in one colour.
class ColorFilm : public Film {
  public:
    QColor color;
    QSize size;
    QSize PictureSize() const override { return size; }
    bool Draw(const QSize& wanted, QImage& image) const override {
        image = QImage(wanted, QImage::Format_RGB32);
        image.fill(color);
        return true;
    }
};

TEST(PlayerView, DrawsOnlyTheNewestPicture) {
    ColorFilm film;
    PlayerView player;
    player.resize(68, 36);
    player.SetFilm(&film);
    player.show();
    const QImage empty = player.grab().toImage();
    EXPECT_EQ(player.DrawnPictures(), 0) << "none has come";
    film.size = QSize(34, 18);
    for (int i = 0; i < 20; ++i) {
        film.color = QColor(10 * i, 0, 0);
        player.TakePicture();
    }
    const QImage shown = player.grab().toImage();
    EXPECT_EQ(shown.pixelColor(34, 18).red(), 190);
    EXPECT_EQ(player.DrawnPictures(), 1);
    player.SetFilm(nullptr);
    EXPECT_EQ(player.DrawnPictures(), 0);
    EXPECT_EQ(player.grab().toImage(), empty);
}

TEST(ColorWell, AsksAndReportsOnlyAnotherColor) {
    ColorWell well;
    well.setColor(QColor(1, 2, 3));
    std::optional<QColor> answer;
    QColor offered;
    well.SetChooser([&](const QColor& current) {
        offered = current;
        return answer;
    });
    QSignalSpy edits(&well, &ColorWell::ColorEdited);
    QTest::keyClick(&well, Qt::Key_Space);
    EXPECT_EQ(offered, QColor(1, 2, 3));
    answer = QColor(1, 2, 3);
    well.click();
    EXPECT_EQ(edits.count(), 0);
    answer = QColor(9, 8, 7, 100);
    well.click();
    EXPECT_EQ(edits.count(), 1);
    EXPECT_EQ(well.color(), QColor(9, 8, 7, 100));
}

TEST(CaptionField, EnterAppliesAndShiftEnterBreaksTheLine) {
    CaptionField field;
    QSignalSpy applied(&field, &CaptionField::editingFinished);
    QTest::keyClicks(&field, QStringLiteral("one"));
    QTest::keyClick(&field, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(&field, QStringLiteral("two"));
    EXPECT_EQ(applied.count(), 0);
    QTest::keyClick(&field, Qt::Key_Enter);
    EXPECT_EQ(applied.count(), 1);
    EXPECT_EQ(field.text(), QStringLiteral("one\ntwo"));
}

}  // namespace
}  // namespace lumirra
