#include <gtest/gtest.h>

#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include "views/controls/SliderCellVideo.h"

namespace lumirra {
namespace {

/// The middle of the columns of one colour in a row of the drawn slider; -1 when there is none.
double MiddleOf(const QImage& picture, int row, const QColor& color) {
    int first = -1;
    int last = -1;
    for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixelColor(x, row) == color) {
            first = first < 0 ? x : first;
            last = x;
        }
    }
    return first < 0 ? -1 : (first + last + 1) / 2.0;
}

TEST(SliderCellVideo, TicksStandWhereTheKnobWasAlsoAfterResizing) {
    SliderCellVideo slider;
    const QColor green(0, 194, 21);
    const QColor red(245, 28, 1);
    for (const int width : {240, 611, 1200}) {
        slider.resize(width, 28);
        for (const double mark : {0.0, 0.18, 0.5, 0.8, 1.0}) {
            // The knob's middle, worked out anew: 16 wide, its left edge runs over the rest.
            const double middle = 8 + mark * (width - 16);
            slider.SetStartMark(mark);
            slider.SetEndMark(mark < 0.5 ? 1 : 0);  // drawn last, so kept away
            EXPECT_NEAR(slider.StartTickRect().center().x(), middle, 1e-4);
            EXPECT_NEAR(MiddleOf(slider.grab().toImage(), 5, green), middle, 1.01);
            slider.SetEndMark(mark);
            EXPECT_NEAR(slider.EndTickRect().center().x(), middle, 1e-4);
            EXPECT_NEAR(MiddleOf(slider.grab().toImage(), 5, red), middle, 1.01);
            slider.setValue(mark);
            EXPECT_NEAR(slider.KnobRect().center().x(), middle, 1e-4);
        }
    }
    EXPECT_EQ(slider.StartTickRect().size(), QSizeF(4, 20));
    EXPECT_EQ(slider.BarRect().height(), 5);
}

TEST(SliderCellVideo, PointsOfTheFullRangeAreZeroAndOne) {
    SliderCellVideo slider;
    slider.resize(500, 28);
    slider.SetStartMark(0);
    slider.SetEndMark(1);
    EXPECT_DOUBLE_EQ(slider.startPoint(), 0);
    EXPECT_DOUBLE_EQ(slider.endPoint(), 1);
    slider.SetEndMark(0.5);
    EXPECT_NEAR(slider.endPoint(), 1 + 0.5 * (500 - 16), 1e-4);
}

TEST(SliderCellVideo, FillsUpToTheKnobAndShowsNoTicksWhileDisabled) {
    SliderCellVideo slider;
    slider.resize(500, 28);
    slider.setValue(0.5);
    QImage drawn = slider.grab().toImage();
    EXPECT_EQ(drawn.pixelColor(120, 13), QColor(153, 204, 255));
    EXPECT_EQ(drawn.pixelColor(400, 13), QColor(170, 170, 170));
    slider.setEnabled(false);
    drawn = slider.grab().toImage();
    EXPECT_EQ(MiddleOf(drawn, 5, QColor(0, 194, 21)), -1);
    EXPECT_NE(drawn.pixelColor(120, 13), QColor(153, 204, 255));
}

TEST(SliderCellVideo, DragsFinelyAndTellsWhereThePointerIs) {
    SliderCellVideo slider;
    slider.resize(1016, 28);
    slider.show();
    QSignalSpy edits(&slider, &RangeControl::ValueEdited);
    QSignalSpy finished(&slider, &SliderCellVideo::DragFinished);
    QSignalSpy hovered(&slider, &SliderCellVideo::Hovered);
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(508, 14));
    EXPECT_NEAR(slider.value(), 0.5, 1e-6) << "the knob's middle comes to the pointer";
    QTest::mouseMove(&slider, QPoint(509, 14));
    EXPECT_NEAR(slider.value(), 0.501, 1e-6) << "a pixel is a thousandth here";
    EXPECT_NEAR(hovered.last().at(0).toDouble(), 0.501, 1e-6);
    QTest::mouseMove(&slider, QPoint(5000, 14));
    EXPECT_EQ(slider.value(), 1.0F);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(900, 14));
    EXPECT_EQ(finished.count(), 1);
    EXPECT_EQ(edits.count(), 3);
    QTest::mouseMove(&slider, QPoint(258, 14));
    EXPECT_NEAR(hovered.last().at(0).toDouble(), 0.25, 1e-6);
    EXPECT_EQ(slider.value(), 1.0F);
    slider.setValue(0.25);
    EXPECT_EQ(edits.count(), 3);
}

}  // namespace
}  // namespace lumirra
