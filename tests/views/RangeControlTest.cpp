#include <gtest/gtest.h>

#include <QAccessible>
#include <QDoubleSpinBox>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <cmath>

#include "views/controls/Stepper.h"
#include "views/controls/ValueSlider.h"

namespace lumirra {
namespace {

void Wheel(QWidget& widget, int clicks) {
    const QPointF middle = QRectF(widget.rect()).center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), {}, {0, 120 * clicks}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

/// A slider as wide as in the window, shown and active.
struct ShownSlider {
    ValueSlider slider;
    QSignalSpy edits{&slider, &RangeControl::ValueEdited};
    QSignalSpy changes{&slider, &RangeControl::valueChanged};

    ShownSlider() {
        slider.setRange(-1, 1);
        slider.setSingleStep(0.01);
        slider.setResetValue(0.25);
        slider.setDecimals(2);
        slider.resize(320, 28);
        slider.show();
        slider.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&slider));
        edits.clear();
        changes.clear();
    }
    QPoint Knob() const { return slider.KnobRect().center().toPoint(); }
    QDoubleSpinBox& Field() { return *slider.findChild<QDoubleSpinBox*>(); }
    void Type(const char* text) {
        Field().setFocus();
        Field().selectAll();
        QTest::keyClicks(&Field(), QString::fromLatin1(text));
        QTest::keyClick(&Field(), Qt::Key_Return);
    }
};

TEST(RangeControl, ValuesFromCodeAreClampedSinglePrecisionAndNoEdits) {
    ShownSlider shown;
    shown.slider.setValue(0.1234567);
    EXPECT_EQ(shown.slider.value(), 0.1234567F) << "not rounded to what the field shows";
    EXPECT_EQ(shown.Field().text(), QLocale().toString(0.12, 'f', 2));
    shown.slider.setValue(7);
    EXPECT_EQ(shown.slider.value(), 1.0F);
    shown.slider.setValue(std::nan(""));
    EXPECT_EQ(shown.slider.value(), 1.0F);
    EXPECT_EQ(shown.changes.count(), 2);
    shown.slider.setRange(-0.5, 0.5);
    EXPECT_EQ(shown.slider.value(), 0.5F);
    shown.slider.setMinimum(0.75);
    EXPECT_EQ(shown.slider.maximum(), 0.75);
    EXPECT_EQ(shown.slider.value(), 0.75F);
    EXPECT_EQ(shown.edits.count(), 0);
}

TEST(ValueSlider, LeavingTheFieldUntouchedKeepsFinerValues) {
    ShownSlider shown;
    shown.slider.setValue(0.333333);
    shown.Field().setFocus();
    shown.slider.setFocus();
    EXPECT_EQ(shown.slider.value(), 0.333333F);
    EXPECT_EQ(shown.edits.count(), 0);
}

TEST(ValueSlider, TakesTypedValues) {
    ShownSlider shown;
    shown.Type("-0.42");
    EXPECT_FLOAT_EQ(shown.slider.value(), -0.42F);
    EXPECT_EQ(shown.edits.count(), 1);
    shown.Type("-0.42");
    EXPECT_EQ(shown.edits.count(), 1) << "the same value again is no edit";
}

TEST(ValueSlider, DragsSnapsAndResets) {
    ShownSlider shown;
    const QPoint knob = shown.Knob();
    QTest::mousePress(&shown.slider, Qt::LeftButton, {}, knob + QPoint(5, 0));
    EXPECT_EQ(shown.edits.count(), 0) << "touching the knob beside its middle moves nothing";
    QSignalSpy finished(&shown.slider, &ValueSlider::DragFinished);
    QTest::mouseMove(&shown.slider, knob + QPoint(38, 0));
    const double travel = 320 - 64 - 10 - 16;  // field, gap and knob taken off
    const double expected = std::round(33 / travel * 2 * 100) / 100;
    EXPECT_FLOAT_EQ(shown.slider.value(), static_cast<float>(expected));
    QTest::mouseMove(&shown.slider, QPoint(-500, 0));
    EXPECT_EQ(shown.slider.value(), -1.0F);
    QTest::mouseRelease(&shown.slider, Qt::LeftButton, {}, QPoint(0, 14));
    EXPECT_EQ(finished.count(), 1);
    QTest::mouseDClick(&shown.slider, Qt::LeftButton, {}, QPoint(60, 14));
    EXPECT_EQ(shown.slider.value(), 0.25F);
}

TEST(RangeControl, KeysAndWheel) {
    ShownSlider shown;
    shown.Field().clearFocus();
    shown.slider.clearFocus();
    Wheel(shown.slider, 3);
    EXPECT_EQ(shown.slider.value(), 0.0F) << "the wheel belongs to the page";
    Wheel(shown.Field(), 3);
    EXPECT_EQ(shown.slider.value(), 0.0F);
    shown.slider.setFocus();
    ASSERT_TRUE(shown.slider.hasFocus());
    Wheel(shown.slider, 3);
    EXPECT_FLOAT_EQ(shown.slider.value(), 0.03F);
    const struct {
        Qt::Key key;
        float value;
    } steps[] = {{Qt::Key_Left, 0.02F}, {Qt::Key_Up, 0.03F},   {Qt::Key_PageUp, 0.13F},
                 {Qt::Key_End, 1},      {Qt::Key_Right, 1},    {Qt::Key_Down, 0.99F},
                 {Qt::Key_Home, -1},    {Qt::Key_PageDown, -1}};
    for (const auto& [key, value] : steps) {
        QTest::keyClick(&shown.slider, key);
        EXPECT_NEAR(shown.slider.value(), value, 1e-6) << int(key);
    }
    shown.slider.setEnabled(false);
    QTest::keyClick(&shown.slider, Qt::Key_End);
    QTest::mouseClick(&shown.slider, Qt::LeftButton, {}, QPoint(100, 14));
    EXPECT_EQ(shown.slider.value(), -1.0F);
}

TEST(RangeControl, AssistiveTechnologyReadsAndSets) {
    ShownSlider shown;
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&shown.slider);
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(face->role(), QAccessible::Slider);
    QAccessibleValueInterface* value = face->valueInterface();
    ASSERT_NE(value, nullptr);
    value->setCurrentValue(0.5);
    EXPECT_EQ(shown.slider.value(), 0.5F);
    EXPECT_EQ(shown.edits.count(), 1) << "counts as done by a person";
    EXPECT_EQ(value->currentValue().toDouble(), 0.5);
    EXPECT_EQ(value->minimumValue().toDouble(), -1);
}

TEST(Stepper, ClicksRepeatAndStopAtTheLimits) {
    Stepper stepper;
    stepper.setRange(-10000, 10000);
    stepper.setValue(9998);
    stepper.show();
    QSignalSpy edits(&stepper, &RangeControl::ValueEdited);
    const QPoint up(10, 5);
    const QPoint down(10, stepper.height() - 5);
    QTest::mouseClick(&stepper, Qt::LeftButton, {}, up);
    QTest::mouseClick(&stepper, Qt::LeftButton, {}, down);
    EXPECT_EQ(stepper.value(), 9998.0F);
    EXPECT_EQ(edits.count(), 2);
    QTest::mousePress(&stepper, Qt::LeftButton, {}, down);
    EXPECT_TRUE(QTest::qWaitFor([&] { return stepper.value() <= 9994; }, 3000)) << "held: repeats";
    QTest::mouseRelease(&stepper, Qt::LeftButton, {}, down);
    const float left = stepper.value();
    QTest::qWait(150);
    EXPECT_EQ(stepper.value(), left) << "let go: stops";
    stepper.setValue(10000);
    edits.clear();
    QTest::mouseClick(&stepper, Qt::LeftButton, {}, up);
    EXPECT_EQ(edits.count(), 0);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&stepper)->role(), QAccessible::SpinBox);
}

}  // namespace
}  // namespace lumirra
