#include <QAction>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QRadioButton>
#include <QTest>

#include "WindowFixture.h"
#include "settings/ProfileText.h"
#include "settings/ValueRules.h"
#include "views/controls/ColorWell.h"
#include "views/controls/PopUp.h"

namespace lumirra {
namespace {

using SettingsStory = WindowTest;

TEST_F(SettingsStory, AFreshWindowStandsAtItsInitialValues) {
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Lumirra"));
    EXPECT_FALSE(window.IsModified());
    EXPECT_EQ(window.Values(), InitialControlValues());
    EXPECT_EQ(window.State().textFieldsValues, StoreTextFieldsValues(InitialControlValues()));
    for (const char* label : {"labelStartTime", "labelEndTime"}) {
        EXPECT_EQ(TextOf(label), QStringLiteral("00:00:00.0"));
    }
    for (const char* hidden : {"playerViewVideo", "buttonPlayVideo", "buttonPreviousImage",
                               "buttonNextImage", "labelImageNumber"}) {
        EXPECT_FALSE(Shown(hidden)) << hidden;
    }
    for (const char* disabled :
         {"buttonMoveUp", "buttonMoveDown", "sliderVideoPosition", "buttonMarkAsStartTime",
          "buttonMarkAsEndTime", "radioFixedNumberOfFrames", "comboPlayMode",
          "buttonAddFramesAutomatically"}) {
        EXPECT_FALSE(Enabled(disabled)) << disabled;
    }
    for (const char* enabled : {"sliderHue", "buttonSelectVideo", "textFieldText"}) {
        EXPECT_TRUE(Enabled(enabled)) << enabled;
    }
}

TEST_F(SettingsStory, FieldsAndSteppersFollowEachOther) {
    Type("textFieldFixedNumberOfFrames", QStringLiteral("abc"));
    EXPECT_EQ(FieldText("textFieldFixedNumberOfFrames"), QStringLiteral("20"));
    Type("textFieldFixedNumberOfFrames", QStringLiteral("20000"));
    EXPECT_EQ(FieldText("textFieldFixedNumberOfFrames"), QStringLiteral("10000"));
    EXPECT_EQ(ValueOf("stepperFixedNumberOfFrames"), 10000.0F);
    Type("textFieldFrameDelay", QStringLiteral("2.5"));
    EXPECT_EQ(ValueOf("stepperFrameDelay"), 25.0F);
    Type("textFieldFrameDelay", QStringLiteral("0"));
    EXPECT_EQ(FieldText("textFieldFrameDelay"), QStringLiteral("0.1"));
    EXPECT_FALSE(window.IsModified()) << "these fields do not mark the project";
    OpenVideo(Media("counter-2997.mov"));  // enables the extraction controls
    Edit("stepperFixedIntervalBetweenFrames", 7);
    EXPECT_EQ(FieldText("textFieldFixedIntervalBetweenFrames"), QStringLiteral("0.7"));
    EXPECT_TRUE(window.IsModified());
    window.MarkModified();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Lumirra*"));
}

TEST_F(SettingsStory, RadioPairsHoldOneOn) {
    auto& number = Find<QRadioButton>("radioFixedNumberOfFrames");
    auto& interval = Find<QRadioButton>("radioFixedIntervalBetweenFrames");
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    number.click();
    EXPECT_TRUE(number.isChecked());
    EXPECT_FALSE(interval.isChecked());
    number.click();
    EXPECT_TRUE(number.isChecked()) << "a click on the radio that is on leaves it on";
    EXPECT_FALSE(interval.isChecked());
    dialogs.answers.push_back(Dialogs::FirstButton);
    window.OnFileNew();
    EXPECT_TRUE(interval.isChecked());
    EXPECT_FALSE(number.isChecked());
}

/// Moves every control away from its initial value, as a person would.
void Disturb(const ControlRow& row, QWidget& widget) {
    switch (row.kind) {
        case ControlKind::Slider:
        case ControlKind::Stepper: {
            auto& range = *qobject_cast<RangeControl*>(&widget);
            const double far = range.value() < range.maximum() ? range.maximum() : range.minimum();
            range.EditValue((range.value() + far) / 2);
            break;
        }
        case ControlKind::Number: {
            auto& number = *qobject_cast<QDoubleSpinBox*>(&widget);
            number.setValue(number.value() / 2);
            break;
        }
        case ControlKind::Check:
            qobject_cast<QCheckBox*>(&widget)->click();
            break;
        case ControlKind::PopUp: {
            auto& popUp = *qobject_cast<PopUp*>(&widget);
            popUp.setCurrentIndex((popUp.currentIndex() + 1) % popUp.count());
            Q_EMIT popUp.activated(popUp.currentIndex());
            break;
        }
        case ControlKind::Color: {
            auto& well = *qobject_cast<ColorWell*>(&widget);
            well.SetChooser([](const QColor&) { return std::optional<QColor>(Qt::red); });
            well.click();
            break;
        }
        case ControlKind::Text:
            if (auto* field = qobject_cast<QLineEdit*>(&widget)) {
                field->setText(QStringLiteral("3"));
                Q_EMIT field->editingFinished();
            }
            break;
        case ControlKind::Radio:
            qobject_cast<QRadioButton*>(&widget)->click();
            break;
    }
}

struct GroupReset {
    ResetGroup group;
    const char* button;
    std::optional<Control> onlyWhenOn;
    bool renders;
    bool marks;
};

TEST_F(SettingsStory, EachResetRestoresItsGroupAndNothingElse) {
    const GroupReset resets[] = {
        {ResetGroup::Adjust, "buttonAdjustSettingsReset", std::nullopt, true, true},
        {ResetGroup::Cartoon, "buttonCartoonReset", Control::CheckCartoon, true, true},
        {ResetGroup::Sketch, "buttonSketchReset", Control::CheckSketch, true, true},
        {ResetGroup::Vignette, "buttonVignetteReset", Control::CheckVignette, true, true},
        {ResetGroup::Text, "buttonTextReset", std::nullopt, true, true},
        {ResetGroup::CropResize, "buttonCropResizeReset", std::nullopt, true, true},
        {ResetGroup::Output, "buttonOutputReset", std::nullopt, false, false}};
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    for (const GroupReset& reset : resets) {
        for (const ControlRow& row : ControlTable()) {
            if (row.resetGroup == reset.group) {
                Disturb(row, Outlet(row.name));
            }
        }
        Settle();
        const ControlValues disturbed = window.Values();
        ForgetChanges();
        Press(reset.button);
        const bool expectRender =
            reset.renders && (!reset.onlyWhenOn || disturbed.IsOn(*reset.onlyWhenOn));
        EXPECT_EQ(window.State().updating, expectRender) << reset.button;
        EXPECT_EQ(window.IsModified(), reset.marks) << reset.button;
        Settle();
        ControlValues expected = ResetGroupOf(disturbed, reset.group);
        if (reset.group == ResetGroup::CropResize) {
            expected.SetText(Control::TextFieldDimensionsWidth, QStringLiteral("320"));
            expected.SetText(Control::TextFieldDimensionsHeight, QStringLiteral("180"));
        }
        EXPECT_NE(disturbed, expected) << reset.button;
        EXPECT_EQ(window.Values(), expected) << reset.button;
    }
}

TEST_F(SettingsStory, AnEffectsSliderRendersOnlyWhileItsCheckBoxIsOn) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    for (const ControlRow& row : ControlTable()) {
        if (row.kind != ControlKind::Slider || !row.change.onlyWhenOn) {
            continue;
        }
        ForgetChanges();
        Disturb(row, Outlet(row.name));
        EXPECT_FALSE(window.State().updating) << row.name.data();
        EXPECT_TRUE(window.IsModified()) << row.name.data();
    }
    Press("checkCartoon");
    Settle();
    Edit("sliderCartoonBlur", 0);
    EXPECT_TRUE(window.State().updating);
    Settle();
}

TEST_F(SettingsStory, CommittingTheSameTextTwiceRendersOnce) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    Type("textFieldTextFontSize", QStringLiteral("40"));
    EXPECT_TRUE(window.State().updating);
    EXPECT_EQ(ValueOf("stepperTextFontSize"), 40.0F);
    Settle();
    ForgetChanges();
    Type("textFieldTextFontSize", QStringLiteral("40"));
    EXPECT_FALSE(window.State().updating);
    EXPECT_FALSE(window.IsModified());
}

TEST_F(SettingsStory, UnitChangeAndTypedDimensions) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));  // 320 x 180
    EXPECT_EQ(FieldText("textFieldDimensionsWidth"), QStringLiteral("320"));
    Type("textFieldCustomCropOriginX", QStringLiteral("10"));
    Type("textFieldCustomCropWidth", QStringLiteral("50"));
    Settle();
    EXPECT_EQ(FieldText("textFieldDimensionsWidth"), QStringLiteral("160"));
    auto& unit = Find<PopUp>("comboCustomCrop");
    unit.setCurrentIndex(1);
    Q_EMIT unit.activated(1);
    EXPECT_EQ(FieldText("textFieldCustomCropOriginX"), QStringLiteral("32"));
    EXPECT_EQ(FieldText("textFieldCustomCropWidth"), QStringLiteral("160"));
    EXPECT_EQ(FieldText("textFieldCustomCropHeight"), QStringLiteral("180"));
    EXPECT_EQ(Find<RangeControl>("stepperCustomCropOriginX").minimum(), -10000);
    Settle();
    Type("textFieldDimensionsWidth", QStringLiteral("80"));
    EXPECT_EQ(FieldText("textFieldDimensionsHeight"), QStringLiteral("90"));
    EXPECT_EQ(ValueOf("stepperResizeTo"), 50.0F);
    EXPECT_FALSE(window.State().updating) << "a typed dimension does not render";
    unit.setCurrentIndex(0);
    Q_EMIT unit.activated(0);
    EXPECT_EQ(FieldText("textFieldCustomCropOriginX"), QStringLiteral("10"));
    EXPECT_EQ(Find<RangeControl>("stepperCustomCropOriginX").maximum(), 100);
    Settle();
}

TEST_F(SettingsStory, AFieldLeftWithoutAnEditKeepsItsFraction) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    Type("textFieldDimensionsWidth", QStringLiteral("150"));
    EXPECT_EQ(FieldText("textFieldResizeTo"), QStringLiteral("46.875"));
    ForgetChanges();
    for (const char* field : {"textFieldResizeTo", "textFieldDimensionsWidth"}) {
        Q_EMIT Find<QLineEdit>(field).editingFinished();
    }
    EXPECT_EQ(FieldText("textFieldResizeTo"), QStringLiteral("46.875"));
    EXPECT_FALSE(window.IsModified());

    // A picture that arrives while the field is typed in does not count as its commit.
    Find<QLineEdit>("textFieldTextFontSize").setText(QStringLiteral("30"));
    window.UpdateVideoPreview();
    Settle();
    Q_EMIT Find<QLineEdit>("textFieldTextFontSize").editingFinished();
    EXPECT_EQ(ValueOf("stepperTextFontSize"), 30.0F);
}

TEST_F(SettingsStory, EnterAppliesTheRuleToWhatAProfileBrought) {
    Profile odd;
    odd.values.SetText(Control::TextFieldFixedNumberOfFrames, QStringLiteral("abc"));
    odd.values.SetText(Control::TextFieldTextOpacity, QStringLiteral("999"));
    odd.values.SetText(Control::TextFieldText, QStringLiteral("a\u00a0b\nc"));
    const QString path = folder.filePath(QStringLiteral("odd.lmr"));
    ASSERT_TRUE(SaveProfile(odd, path));
    dialogs.files.push_back(QStringList{path});
    window.OnLoadProfile();
    EXPECT_EQ(window.Values().Text(Control::TextFieldText), QStringLiteral("a\u00a0b\nc"));
    const auto enter = [&](const char* field) {
        auto& line = Find<QLineEdit>(field);
        line.setEnabled(true);
        QTest::keyClick(&line, Qt::Key_Return);
        return line.text();
    };
    Q_EMIT Find<QLineEdit>("textFieldTextOpacity").editingFinished();
    EXPECT_EQ(FieldText("textFieldTextOpacity"), QStringLiteral("999")) << "left without an edit";
    EXPECT_EQ(enter("textFieldTextOpacity"), QStringLiteral("100"));
    EXPECT_EQ(ValueOf("stepperTextOpacity"), 100.0F);
    EXPECT_EQ(enter("textFieldFixedNumberOfFrames"), QStringLiteral("20"));

    OpenVideo(Media("counter-30fps-bframes.mp4"));  // 320 x 180
    Type("textFieldDimensionsWidth", QStringLiteral("4000"));
    EXPECT_EQ(enter("textFieldResizeTo"), QStringLiteral("1250"));
    EXPECT_EQ(enter("textFieldDimensionsWidth"), QStringLiteral("4000"));
    window.UpdateVideoPreview();
    Settle();
    EXPECT_EQ(FieldText("textFieldDimensionsHeight"), QStringLiteral("2250"));
}

TEST_F(SettingsStory, WhatIsBeingTypedIsKeptAndCountsForACommand) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));  // 320 x 180
    auto& width = Find<QLineEdit>("textFieldDimensionsWidth");
    window.UpdateVideoPreview();
    width.setText(QStringLiteral("16"));  // not committed yet
    Settle();
    EXPECT_EQ(width.text(), QStringLiteral("16")) << "the picture that arrived left it alone";
    width.setText(QStringLiteral("160"));
    Press("buttonAddFrame");
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.State().frames.Count() == 1; }, 20000));
    EXPECT_EQ(QImage(window.State().frames.Paths().first()).size(), QSize(160, 90));

    Find<QLineEdit>("textFieldLoopCount").setText(QStringLiteral("7"));
    window.findChild<QAction*>(QStringLiteral("actionUndo"))->trigger();
    EXPECT_EQ(FieldText("textFieldLoopCount"), QStringLiteral("0")) << "typed, then taken back";
}

TEST_F(SettingsStory, StepsBackAndForthShowInEveryControl) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    auto& undo = *window.findChild<QAction*>(QStringLiteral("actionUndo"));
    auto& redo = *window.findChild<QAction*>(QStringLiteral("actionRedo"));
    Edit("sliderHue", 90);
    Press("checkVignette");
    Press("buttonAdjustSettingsReset");
    EXPECT_EQ(undo.text(), QStringLiteral("&Undo Reset Adjustments"));
    EXPECT_FALSE(redo.isEnabled());
    Settle();
    undo.trigger();
    EXPECT_EQ(ValueOf("sliderHue"), 90.0F);
    EXPECT_TRUE(window.State().updating) << "the picture follows";
    undo.trigger();
    EXPECT_FALSE(Find<QCheckBox>("checkVignette").isChecked());
    undo.trigger();
    EXPECT_EQ(ValueOf("sliderHue"), 0.0F);
    EXPECT_FALSE(window.IsModified()) << "as it was at the start";
    undo.trigger();
    EXPECT_TRUE(window.State().videoPath.isEmpty());
    EXPECT_TRUE(Picture().isNull());
    EXPECT_FALSE(undo.isEnabled());
    for (int i = 0; i < 4; ++i) {
        redo.trigger();
    }
    Settle();
    EXPECT_TRUE(Find<QCheckBox>("checkVignette").isChecked());
    EXPECT_EQ(TextOf("labelEndTime"), QStringLiteral("00:00:03.0"));
    EXPECT_EQ(CounterIn(Picture()), 0);

    dialogs.answers = {Dialogs::FirstButton};
    window.OnFileNew();
    EXPECT_EQ(window.Values(), InitialControlValues());
    undo.trigger();
    Settle();
    EXPECT_TRUE(Find<QCheckBox>("checkVignette").isChecked()) << "New is undone too";
    EXPECT_FALSE(Picture().isNull());
}

TEST_F(SettingsStory, CommandIsCtrlAlone) {
    const auto press = [&](int key, Qt::KeyboardModifiers modifiers) {
        QTest::simulateEvent(&window, true, key, modifiers, QString(), false);
    };
    const auto release = [&](int key, Qt::KeyboardModifiers modifiers) {
        QTest::simulateEvent(&window, false, key, modifiers, QString(), false);
    };
    press(Qt::Key_Control, Qt::NoModifier);
    EXPECT_TRUE(window.State().commandIsPressed);
    press(Qt::Key_Shift, Qt::ControlModifier);
    EXPECT_FALSE(window.State().commandIsPressed);
    release(Qt::Key_Shift, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(window.State().commandIsPressed);
    release(Qt::Key_Control, Qt::ControlModifier);
    EXPECT_FALSE(window.State().commandIsPressed);
}

}  // namespace
}  // namespace lumirra
