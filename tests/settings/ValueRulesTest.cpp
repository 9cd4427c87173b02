#include <gtest/gtest.h>

#include <cmath>

#include "settings/Assignment.h"
#include "settings/CropResize.h"
#include "settings/NumberText.h"
#include "settings/Printing.h"
#include "settings/ProfileText.h"
#include "settings/SettingsRecords.h"
#include "settings/ValueRules.h"

namespace lumirra {
namespace {

using C = Control;

QString Q(const char* text) {
    return QString::fromUtf8(text);
}

struct Typed {
    C field;
    const char* text;
    const char* kept;
    float stepper;
};

TEST(Fields, KeepWhatTheirRuleAcceptsAndTakeTheirStepperAlong) {
    const Typed cases[] = {
        {C::TextFieldFixedNumberOfFrames, "abc", "20", 20},
        {C::TextFieldFixedNumberOfFrames, "0", "1", 1},
        {C::TextFieldFixedNumberOfFrames, "-3", "1", 1},
        {C::TextFieldFixedNumberOfFrames, "20000", "10000", 10000},
        {C::TextFieldFixedNumberOfFrames, "99999999999999999999999", "10000", 10000},
        {C::TextFieldFixedNumberOfFrames, "007", "007", 7},
        {C::TextFieldFixedNumberOfFrames, "", "20", 20},
        {C::TextFieldLoopCount, "0", "0", 0},
        {C::TextFieldLoopCount, "-1", "0", 0},
        {C::TextFieldLoopCount, "12.5", "0", 0},
        {C::TextFieldLoopCount, "10001", "10000", 10000},
        {C::TextFieldTextFontSize, "+5", "+5", 5},
        {C::TextFieldTextFontSize, "x", "80", 80},
        {C::TextFieldTextFontSize, "501", "500", 500},
        {C::TextFieldTextOpacity, "101", "100", 100},
        {C::TextFieldTextOpacity, "7 0", "70", 70},
        {C::TextFieldTextXOffset, "-10001", "-10000", -10000},
        {C::TextFieldTextYOffset, "10001", "10000", 10000},
        {C::TextFieldResizeTo, "abc", "100", 100},
        {C::TextFieldResizeTo, "2000", "1000", 1000},
        {C::TextFieldResizeTo, "-1", "0", 0},
        {C::TextFieldCustomCropWidth, "-1", "0", 0},
        {C::TextFieldCustomCropWidth, "101", "100", 100},
        {C::TextFieldCustomCropWidth, "5.5", "0", 0},
    };
    const std::pair<C, C> times[] = {
        {C::TextFieldFixedIntervalBetweenFrames, C::StepperFixedIntervalBetweenFrames},
        {C::TextFieldFrameDelay, C::StepperFrameDelay}};
    for (const Typed& typed : cases) {
        const ControlValues values = CommitField({}, typed.field, Q(typed.text));
        EXPECT_EQ(values.Text(typed.field), Q(typed.kept)) << typed.text;
        EXPECT_EQ(values.Number(*RowOf(typed.field).partner), typed.stepper) << typed.text;
    }
    for (const auto& [field, stepper] : times) {
        const Typed decimals[] = {{field, "0", "0.1", 1},
                                  {field, "x", "0.1", 1},
                                  {field, "2000000", "1000000", 1e7F},
                                  {field, "2.5", "2.5", 25},
                                  {field, "-1", "0.1", 1},
                                  {field, "nan", "0.1", 1},
                                  {field, "inf", "1000000", 1e7F},
                                  {field, "0x2", "0x2", 20},
                                  {field, "1e-3", "1e-3", 0},
                                  {field, "0.05", "0.05", 0.5F},
                                  {field, "1 ", "0.1", 1},
                                  {field, "1,5", "0.1", 1}};
        for (const Typed& typed : decimals) {
            const ControlValues values = CommitField({}, field, Q(typed.text));
            EXPECT_EQ(values.Text(field), Q(typed.kept)) << typed.text;
            EXPECT_EQ(values.Number(stepper), typed.stepper) << typed.text;
        }
    }
}

TEST(Fields, CropLimitsFollowTheUnit) {
    const ControlValues pixels = ChangeCropUnit({}, 1, {1000, 800});
    for (const auto& [text, kept] : {std::pair("-100", "-100"), std::pair("10001", "10000"),
                                     std::pair("-10001", "-10000"), std::pair("x", "0")}) {
        const ControlValues values = CommitField(pixels, C::TextFieldCustomCropOriginX, Q(text));
        EXPECT_EQ(values.Text(C::TextFieldCustomCropOriginX), Q(kept));
        EXPECT_EQ(values.Number(C::StepperCustomCropOriginX), Q(kept).toFloat());
    }
}

TEST(Fields, CommittingTwiceChangesNothingMore) {
    for (const ControlRow& row : ControlTable()) {
        if (row.kind != ControlKind::Text) {
            continue;
        }
        for (const char* text : {"", "abc", "-99999", "0", "7", "3.7", "99999999", "nan", "1e5"}) {
            const ControlValues once = CommitField({}, row.control, Q(text));
            EXPECT_EQ(CommitField(once, row.control, once.Text(row.control)), once)
                << row.name.data() << ' ' << text;
        }
    }
}

TEST(Fields, CommittedAsLoadedFollowTheirRule) {
    const Typed cases[] = {{C::TextFieldFixedNumberOfFrames, "abc", "20", 20},
                           {C::TextFieldTextOpacity, "999", "100", 100},
                           {C::TextFieldFrameDelay, "nan", "0.1", 1},
                           {C::TextFieldCustomCropWidth, "-3", "0", 0},
                           {C::TextFieldResizeTo, "abc", "100", 100},
                           {C::TextFieldResizeTo, "inf", "100", 100},
                           {C::TextFieldResizeTo, "2000", "1000", 1000},
                           {C::TextFieldResizeTo, "46.875", "100", 100}};
    for (const Typed& loaded : cases) {
        ControlValues values;
        values.SetText(loaded.field, Q(loaded.text));
        values = CommitField(values, loaded.field, Q(loaded.text));
        EXPECT_EQ(values.Text(loaded.field), Q(loaded.kept)) << loaded.text;
        EXPECT_EQ(values.Number(*RowOf(loaded.field).partner), loaded.stepper) << loaded.text;
    }
}

TEST(Steppers, ShowTheirValueInTheirField) {
    struct Moved {
        C stepper;
        float value;
        const char* shown;
    };
    const Moved cases[] = {{C::StepperFixedIntervalBetweenFrames, 7, "0.7"},
                           {C::StepperFrameDelay, 25, "2.5"},
                           {C::StepperFixedNumberOfFrames, 21.4F, "21"},
                           {C::StepperTextFontSize, 81, "81"},
                           {C::StepperTextOpacity, 70.5F, "70.5"},
                           {C::StepperTextXOffset, -12, "-12"},
                           {C::StepperResizeTo, 49.2F, "50"},
                           {C::StepperCustomCropWidth, 400, "100"}};
    for (const Moved& moved : cases) {
        const ControlValues values = MoveStepper({}, moved.stepper, moved.value);
        EXPECT_EQ(values.Text(*RowOf(moved.stepper).partner), Q(moved.shown));
    }
    EXPECT_EQ(MoveStepper({}, C::StepperResizeTo, 49.2F).Number(C::StepperResizeTo), 50.0F);
    // A time of 0 seconds is nothing that the field accepts.
    const ControlValues down = MoveStepper({}, C::StepperFrameDelay, 0);
    EXPECT_EQ(down.Text(C::TextFieldFrameDelay), Q("0.1"));
    EXPECT_EQ(down.Number(C::StepperFrameDelay), 1.0F);
}

TEST(Radios, ChoosingOneClearsTheOtherOfItsPair) {
    ControlValues values = ChooseRadio({}, C::RadioFixedNumberOfFrames);
    EXPECT_TRUE(values.IsOn(C::RadioFixedNumberOfFrames));
    EXPECT_FALSE(values.IsOn(C::RadioFixedIntervalBetweenFrames));
    EXPECT_TRUE(values.IsOn(C::RadioCustomCropUsing));
    EXPECT_EQ(ChooseRadio(values, C::RadioFixedNumberOfFrames), values);
}

TEST(CropResize, UnitChangeConvertsOnceAndBack) {
    ControlValues values;
    const std::pair<C, const char*> typed[] = {{C::TextFieldCustomCropOriginX, "10"},
                                               {C::TextFieldCustomCropOriginY, "10"},
                                               {C::TextFieldCustomCropWidth, "50"},
                                               {C::TextFieldCustomCropHeight, "50"}};
    for (const auto& [field, text] : typed) {
        values = CommitField(values, field, Q(text));
    }
    const ImageSize base{1000, 800};
    const ControlValues pixels = ChangeCropUnit(values, 1, base);
    EXPECT_EQ(pixels.Text(C::TextFieldCustomCropOriginX), Q("100"));
    EXPECT_EQ(pixels.Text(C::TextFieldCustomCropOriginY), Q("80"));
    EXPECT_EQ(pixels.Text(C::TextFieldCustomCropWidth), Q("500"));
    EXPECT_EQ(pixels.Text(C::TextFieldCustomCropHeight), Q("400"));
    EXPECT_EQ(pixels.Number(C::StepperCustomCropWidth), 500.0F);
    EXPECT_EQ(pixels.CropUnitInForce(), 1);
    EXPECT_EQ(ChangeCropUnit(pixels, 1, base), pixels) << "the same unit again";
    EXPECT_EQ(ChangeCropUnit(pixels, 0, base), values);
    const ControlValues noPicture = ChangeCropUnit(values, 1, {});
    EXPECT_EQ(noPicture.Text(C::TextFieldCustomCropWidth), Q("50"));
}

OutputDimensions DimensionsAfter(const ControlValues& values, ImageSize base) {
    return DimensionsIn(UpdateCropResizeGeometry(values, base));
}

TEST(CropResize, DimensionsFollowCropAndPercentage) {
    EXPECT_EQ(DimensionsAfter({}, {1280, 720}), (OutputDimensions{1280, 720}));
    EXPECT_EQ(DimensionsAfter({}, {}), (OutputDimensions{0, 0}));
    const ControlValues square =
        CommitField(ChooseRadio({}, C::RadioAutoCropTo), C::TextFieldResizeTo, Q("50"));
    EXPECT_EQ(DimensionsAfter(square, {1280, 720}), (OutputDimensions{360, 360}));
    EXPECT_EQ(DimensionsAfter(square, {721, 721}), (OutputDimensions{361, 361})) << "half goes up";
    EXPECT_EQ(DimensionsAfter(square, {}), (OutputDimensions{0, 0}));
    ControlValues neither;
    neither.SetOn(C::RadioCustomCropUsing, false);
    EXPECT_EQ(DimensionsAfter(neither, {1280, 720}), (OutputDimensions{0, 0}));
    ControlValues outside = ChangeCropUnit({}, 1, {1000, 800});
    outside = CommitField(outside, C::TextFieldCustomCropOriginX, Q("-100"));
    outside = CommitField(outside, C::TextFieldCustomCropWidth, Q("500"));
    outside = CommitField(outside, C::TextFieldCustomCropHeight, Q("400"));
    EXPECT_EQ(DimensionsAfter(outside, {1000, 800}), (OutputDimensions{400, 400}));
    EXPECT_EQ(DimensionsIn(ResetCropResize(outside, {1000, 800})), (OutputDimensions{1000, 800}));
}

TEST(CropResize, TypedDimensionTakesTheOtherAndThePercentageAlong) {
    const ImageSize base{1000, 800};
    const ControlValues start = UpdateCropResizeGeometry({}, base);
    const OutputDimensions last = DimensionsIn(start);
    const auto wide = TypedDimension(start, C::TextFieldDimensionsWidth, Q("500"), base, last);
    EXPECT_TRUE(wide.acted);
    EXPECT_EQ(DimensionsIn(wide.values), (OutputDimensions{500, 400}));
    EXPECT_EQ(wide.values.Text(C::TextFieldResizeTo), Q("50"));
    EXPECT_EQ(wide.values.Number(C::StepperResizeTo), 50.0F);
    const auto high = TypedDimension(start, C::TextFieldDimensionsHeight, Q("400"), base, last);
    EXPECT_EQ(high.values, wide.values);

    const auto odd = TypedDimension(start, C::TextFieldDimensionsWidth, Q("333"), base, last);
    EXPECT_EQ(odd.values.Text(C::TextFieldResizeTo).left(4), Q("33.3"));
    EXPECT_EQ(UpdateCropResizeGeometry(odd.values, base), odd.values)
        << "the percentage gives the typed size again";

    const QString percent = odd.values.Text(C::TextFieldResizeTo);
    EXPECT_EQ(CommitField(odd.values, C::TextFieldResizeTo, percent), odd.values);
    const auto loaded = ProfileFromText(ProfileText({odd.values}));
    EXPECT_EQ(CommitField(loaded->values, C::TextFieldResizeTo, percent), loaded->values);
    EXPECT_EQ(CommitField(odd.values, C::TextFieldResizeTo, Q("33.4")).Text(C::TextFieldResizeTo),
              Q("100"))
        << "typed";

    EXPECT_FALSE(TypedDimension(start, C::TextFieldDimensionsWidth, Q("1000"), base, last).acted);
    const auto none = TypedDimension(start, C::TextFieldDimensionsWidth, Q("99999"), {}, last);
    EXPECT_FALSE(none.acted);
    EXPECT_EQ(none.values.Text(C::TextFieldDimensionsWidth), Q("10000"));
    EXPECT_EQ(none.values.Text(C::TextFieldDimensionsHeight), Q("800"));
}

TEST(CropResize, WhatFollowsFromATypedSizeIsNotLimited) {
    const ImageSize tiny{32, 24};
    const auto typed = TypedDimension(UpdateCropResizeGeometry({}, tiny),
                                      C::TextFieldDimensionsWidth, Q("512"), tiny, {32, 24});
    EXPECT_EQ(DimensionsIn(typed.values), (OutputDimensions{512, 384}));
    EXPECT_EQ(typed.values.Text(C::TextFieldResizeTo), Q("1600"));
    const auto loaded = ProfileFromText(ProfileText({typed.values}));
    for (const ControlValues& values : {typed.values, loaded->values}) {
        EXPECT_EQ(DimensionsAfter(values, tiny), (OutputDimensions{512, 384}));
        EXPECT_EQ(ExtractionSettingsOf(values).resizePercent, 1600.0F);
        EXPECT_EQ(CommitField(values, C::TextFieldResizeTo, Q("1600")), values) << "unedited";
    }
    const ImageSize large{1280, 720};
    const ControlValues grown =
        UpdateCropResizeGeometry(CommitField({}, C::TextFieldResizeTo, Q("1000")), large);
    EXPECT_EQ(DimensionsIn(grown), (OutputDimensions{12800, 7200}));
    EXPECT_EQ(CaptureSettingsOf(grown).width, 12800);
    EXPECT_FALSE(
        TypedDimension(grown, C::TextFieldDimensionsWidth, Q("12800"), large, {12800, 7200}).acted);
}

TEST(CropResize, ATypedSizeStaysWhateverTheCrop) {
    for (int width = 1; width <= 300; width += 7) {
        for (int height = 1; height <= 300; height += 3) {
            const ImageSize base{static_cast<double>(width), static_cast<double>(height)};
            for (const int wanted : {3, 50, 75, 9999}) {
                const auto typed = TypedDimension({}, C::TextFieldDimensionsWidth,
                                                  QString::number(wanted), base, {});
                ASSERT_EQ(DimensionsAfter(typed.values, base), DimensionsIn(typed.values))
                    << wanted << " of " << width << 'x' << height;
            }
        }
    }
}

TEST(Records, OfANewProjectAreTheEnginesInitialValues) {
    EffectSettings expected;
    expected.colorEffectName = Q("Chrome");
    EXPECT_EQ(EffectSettingsOf({}), expected);
    ExtractionSettings extraction;
    extraction.effects = expected;
    EXPECT_EQ(ExtractionSettingsOf({}), extraction);
    EXPECT_EQ(OutputSettingsOf({}), OutputSettings{});
}

TEST(Records, TakeEachControl) {
    ControlValues values = CommitField({}, C::TextFieldFixedIntervalBetweenFrames, Q("2.5"));
    values = MoveStepper(values, C::StepperTextYOffset, -7);
    values = MoveStepper(values, C::StepperTextFontSize, 33);
    values.SetIndex(C::ComboColorEffect, 4);
    values.SetNumber(C::SliderHue, -90);
    values = CommitField(values, C::TextFieldDimensionsWidth, Q("640"));
    values = CommitField(values, C::TextFieldDimensionsHeight, Q("-3"));
    const ExtractionSettings settings = ExtractionSettingsOf(values);
    EXPECT_EQ(settings.intervalSeconds, 2.5);
    EXPECT_EQ(settings.effects.textYOffset, -7.0F);
    EXPECT_EQ(settings.effects.fontSize, 33.0F);
    EXPECT_EQ(settings.effects.colorEffectName, Q("Noir"));
    EXPECT_EQ(settings.effects.hue, -90.0F);
    EXPECT_EQ(settings.width, 640);
    EXPECT_EQ(CaptureSettingsOf(values).height, -3);
}

TEST(Records, AnotherFontIsInForceUntilOneOfTheListIsChosen) {
    ControlValues values = CommitField({}, C::FieldOtherFont, Q("Comic Neue:Bold"));
    EXPECT_EQ(EffectSettingsOf(values).otherFont, Q("Comic Neue:Bold"));
    const auto assigned = AssignControl(values, Q("comboTextFontType"), Q("Arial"), {});
    ASSERT_TRUE(assigned);
    EXPECT_EQ(EffectSettingsOf(*assigned).otherFont, QString());
    EXPECT_EQ(*assigned, ChooseListedFont(values, 1));
}

TEST(Records, AreFiniteWhateverTextAFieldHolds) {
    for (const char* text : {"", "abc", "nan", "inf", "-inf", "1e300", "-1e300", "0", "\n"}) {
        ControlValues values;
        for (const ControlRow& row : ControlTable()) {
            if (row.kind == ControlKind::Text && row.rule != ValueRule::Free) {
                values.SetText(row.control, Q(text));
                const double number = NumberInForce(values, row.control);
                EXPECT_TRUE(row.followsOthers ? std::abs(number) <= 1e9
                                              : number >= row.minimum && number <= row.maximum)
                    << row.name.data();
            }
        }
        EXPECT_GT(ExtractionSettingsOf(values).intervalSeconds, 0) << text;
        EXPECT_GT(OutputSettingsOf(values).delaySeconds, 0) << text;
        EXPECT_GE(ExtractionSettingsOf(values).frameCount, 1.0F) << text;
    }
}

TEST(Records, SizeLimitNeverExceedsWhatWasAskedFor) {
    EXPECT_EQ(OutputSettingsOf({}).maxBytes, 0) << "off";
    for (long long bytes = 1000; bytes < 99'999'999'999; bytes = bytes * 21 / 13 + 7) {
        const long long limit = OutputSettingsOf(WithMaxBytes({}, bytes)).maxBytes;
        EXPECT_LE(limit, bytes);
        EXPECT_GE(static_cast<double>(limit), static_cast<double>(bytes) * (1 - 1e-6) - 1);
    }
    EXPECT_EQ(OutputSettingsOf(WithMaxBytes({}, 256'000)).maxBytes, 256'000);
}

TEST(Records, ColorLevels) {
    const auto levels = [](bool on, float slider) {
        ControlValues values;
        values.SetOn(C::CheckCustomColorCount, on);
        values.SetNumber(C::SliderCustomColorCount, slider);
        return OutputSettingsOf(values).colorLevels;
    };
    EXPECT_EQ(levels(false, 8), 256);
    EXPECT_EQ(levels(true, 8.9F), 8);
    EXPECT_EQ(levels(true, 32), 256);
    EXPECT_EQ(levels(true, 32.5F), 32);
    EXPECT_EQ(levels(true, 31.99F), 31);
}

}  // namespace
}  // namespace lumirra
