#include <algorithm>
#include <array>

#include "settings/Control.h"

namespace lumirra {
namespace {

using C = Control;

constexpr double kCropPixels = 10000;
constexpr double kLongestSeconds = 1'000'000;

constexpr ChangeRule kMarkOnly{};
constexpr ChangeRule kNothing{.mark = MarkModified::Never};
constexpr ChangeRule kPreview{.preview = true};
constexpr ChangeRule kPreviewAndSnapshot{.preview = true, .snapshot = true};
constexpr ChangeRule kPreviewAndGeometry{.preview = true, .geometry = true};
constexpr ChangeRule kTrackedText{.preview = true,
                                  .snapshot = true,
                                  .onlyWhenTextDiffers = true,
                                  .mark = MarkModified::WhenTextDiffers};
constexpr ChangeRule kCropText{.preview = true,
                               .geometry = true,
                               .onlyWhenOn = C::RadioCustomCropUsing,
                               .snapshot = true,
                               .onlyWhenTextDiffers = true};
constexpr ChangeRule kCropStepper{
    .preview = true, .geometry = true, .onlyWhenOn = C::RadioCustomCropUsing, .snapshot = true};
constexpr ChangeRule kResizeStepper{.geometry = true, .snapshot = true};
constexpr ChangeRule kDimension{.mark = MarkModified::WhenTextDiffers};

constexpr ChangeRule PreviewWhile(C on) {
    return {.preview = true, .onlyWhenOn = on};
}
constexpr ChangeRule PreviewAndGeometryWhile(C on) {
    return {.preview = true, .geometry = true, .onlyWhenOn = on};
}

struct Words {
    const char* label;
    const char* unit;
    const char* tooltip;
};

struct Span {
    double initial, minimum, maximum, step;
};

constexpr ControlRow Slider(C control, const char* name, int line, const Span& span,
                            ResetGroup group, ChangeRule change, const Words& words) {
    return {.control = control,
            .name = QLatin1String(name),
            .kind = ControlKind::Slider,
            .initial = span.initial,
            .minimum = span.minimum,
            .maximum = span.maximum,
            .step = span.step,
            .resetGroup = group,
            .profileLine = line,
            .coding = ProfileCoding::Float,
            .change = change,
            .label = words.label,
            .unit = words.unit,
            .tooltip = words.tooltip};
}

constexpr ControlRow Stepper(C control, const char* name, int line, const Span& span, C field,
                             StepperText text, ResetGroup group, ChangeRule change,
                             const Words& words) {
    ControlRow row = Slider(control, name, line, span, group, change, words);
    row.kind = ControlKind::Stepper;
    row.partner = field;
    row.stepperText = text;
    return row;
}

constexpr ControlRow State(C control, const char* name, int line, bool on, ChangeRule change,
                           const Words& words) {
    return {.control = control,
            .name = QLatin1String(name),
            .kind = ControlKind::Check,
            .initial = on ? 1.0 : 0.0,
            .profileLine = line,
            .change = change,
            .label = words.label,
            .tooltip = words.tooltip};
}

constexpr ControlRow Check(C control, const char* name, int line, ResetGroup group,
                           ChangeRule change, const Words& words) {
    ControlRow row = State(control, name, line, false, change, words);
    row.resetGroup = group;
    return row;
}

constexpr ControlRow Radio(C control, const char* name, int line, bool on, C pair, ResetGroup group,
                           ChangeRule change, const Words& words) {
    ControlRow row = State(control, name, line, on, change, words);
    row.kind = ControlKind::Radio;
    row.partner = pair;
    row.resetGroup = group;
    return row;
}

constexpr ControlRow PopUp(C control, const char* name, int line, int initial, int lastIndex,
                           ResetGroup group, ChangeRule change, const Words& words) {
    return {.control = control,
            .name = QLatin1String(name),
            .kind = ControlKind::PopUp,
            .initial = static_cast<double>(initial),
            .maximum = static_cast<double>(lastIndex),
            .resetGroup = group,
            .profileLine = line,
            .change = change,
            .label = words.label,
            .unit = words.unit,
            .tooltip = words.tooltip};
}

constexpr ControlRow InTail(ControlRow row) {
    row.scope = SettingScope::ProfileTail;
    return row;
}

constexpr ControlRow NumberField(C control, const char* name, const Span& span, ResetGroup group,
                                 ChangeRule change, const Words& words) {
    ControlRow row = Slider(control, name, 0, span, group, change, words);
    row.kind = ControlKind::Number;
    return row;
}

struct Limits {
    ValueRule rule;
    double minimum, maximum;
    const char* fallback;
};

constexpr ControlRow Field(C control, const char* name, int line, const char* initial,
                           Limits limits, std::optional<C> stepper, ResetGroup group,
                           ChangeRule change, const Words& words) {
    return {.control = control,
            .name = QLatin1String(name),
            .kind = ControlKind::Text,
            .initialText = QLatin1String(initial),
            .minimum = limits.minimum,
            .maximum = limits.maximum,
            .rule = limits.rule,
            .fallback = QLatin1String(limits.fallback),
            .partner = stepper,
            .resetGroup = group,
            .profileLine = line,
            .coding = ProfileCoding::Text,
            .change = change,
            .label = words.label,
            .unit = words.unit,
            .tooltip = words.tooltip};
}

constexpr ControlRow ColorWell(C control, const char* name, int line, ResetGroup group,
                               ChangeRule change, const Words& words) {
    return {.control = control,
            .name = QLatin1String(name),
            .kind = ControlKind::Color,
            .initial = 1,
            .resetGroup = group,
            .profileLine = line,
            .coding = ProfileCoding::Color,
            .change = change,
            .label = words.label,
            .tooltip = words.tooltip};
}

constexpr ControlRow Following(ControlRow row) {
    row.followsOthers = true;
    return row;
}

constexpr Limits kSeconds{ValueRule::Decimal, 0, kLongestSeconds, "0.1"};
constexpr Limits kOffset{ValueRule::Integer, -10000, 10000, "0"};
constexpr Limits kCrop{ValueRule::Crop, -kCropPixels, kCropPixels, "0"};
constexpr Span kCropOrigin{0, -kCropPixels, kCropPixels, 1};
constexpr Span kCropExtent{100, -kCropPixels, kCropPixels, 1};

constexpr std::array kTable = {
    // Extraction
    Radio(C::RadioFixedNumberOfFrames, "radioFixedNumberOfFrames", 1, false,
          C::RadioFixedIntervalBetweenFrames, ResetGroup::None, kMarkOnly,
          {"Fixed number of frames", "", "Takes a set number of frames between Start and End"}),
    Field(C::TextFieldFixedNumberOfFrames, "textFieldFixedNumberOfFrames", 2, "20",
          {ValueRule::Integer, 1, 10000, "20"}, C::StepperFixedNumberOfFrames, ResetGroup::None,
          kNothing, {"Number of frames", "", "How many frames are taken from Start to End"}),
    Stepper(C::StepperFixedNumberOfFrames, "stepperFixedNumberOfFrames", 3, {20, 1, 10000, 1},
            C::TextFieldFixedNumberOfFrames, StepperText::Whole, ResetGroup::None, kMarkOnly,
            {"Number of frames, step", "", "Changes the number of frames by one"}),
    Radio(C::RadioFixedIntervalBetweenFrames, "radioFixedIntervalBetweenFrames", 4, true,
          C::RadioFixedNumberOfFrames, ResetGroup::None, kMarkOnly,
          {"Fixed interval between frames", "", "Takes a frame at least every so many seconds"}),
    Field(C::TextFieldFixedIntervalBetweenFrames, "textFieldFixedIntervalBetweenFrames", 5, "0.1",
          kSeconds, C::StepperFixedIntervalBetweenFrames, ResetGroup::None, kNothing,
          {"Interval between frames", "s", "The longest time between two frames"}),
    Stepper(C::StepperFixedIntervalBetweenFrames, "stepperFixedIntervalBetweenFrames", 6,
            {1, 0, 10 * kLongestSeconds, 1}, C::TextFieldFixedIntervalBetweenFrames,
            StepperText::Tenths, ResetGroup::None, kMarkOnly,
            {"Interval between frames, step", "tenths of a second",
             "Changes the interval by a tenth of a second"}),
    PopUp(C::ComboPlayMode, "comboPlayMode", 7, 0, 1, ResetGroup::None, kNothing,
          {"Play mode", "", "Whether the frames run from Start to End, or there and back"}),

    // Adjustments
    Slider(C::SliderBrightness, "sliderBrightness", 8, {0, -1, 1, 0.01}, ResetGroup::Adjust,
           kPreview, {"Brightness", "", "Makes the picture darker or brighter"}),
    Slider(C::SliderContrast, "sliderContrast", 9, {1, 0, 4, 0.01}, ResetGroup::Adjust, kPreview,
           {"Contrast", "", "Draws dark and bright together or apart"}),
    Slider(C::SliderSaturation, "sliderSaturation", 10, {1, 0, 2, 0.01}, ResetGroup::Adjust,
           kPreview, {"Saturation", "", "Takes colour away or adds to it"}),
    Slider(C::SliderExposure, "sliderExposure", 11, {0, -4, 4, 0.01}, ResetGroup::Adjust, kPreview,
           {"Exposure", "stops", "Darkens or lightens as a camera's exposure does"}),
    Slider(C::SliderGamma, "sliderGamma", 12, {1, 0.1, 3, 0.01}, ResetGroup::Adjust, kPreview,
           {"Gamma", "", "Darkens or lightens the middle tones"}),
    Slider(C::SliderHue, "sliderHue", 13, {0, -180, 180, 1}, ResetGroup::Adjust, kPreview,
           {"Hue", "degrees", "Turns all colours round the colour circle"}),

    // Effects
    Check(C::CheckColorEffect, "checkColorEffect", 14, ResetGroup::None, kPreview,
          {"Colour effect", "", "Switches the photo effect on"}),
    PopUp(C::ComboColorEffect, "comboColorEffect", 15, 0, 7, ResetGroup::None,
          PreviewWhile(C::CheckColorEffect), {"Photo effect", "", "Which photo effect is used"}),
    Check(C::CheckCartoon, "checkCartoon", 16, ResetGroup::None, kPreview,
          {"Cartoon", "", "Switches flat colours and dark outlines on"}),
    Slider(C::SliderCartoonBlur, "sliderCartoonBlur", 17, {2, 0, 10, 0.1}, ResetGroup::Cartoon,
           PreviewWhile(C::CheckCartoon),
           {"Cartoon blur", "px", "How much detail is smoothed away first"}),
    Slider(C::SliderCartoonThreshold, "sliderCartoonThreshold", 18, {0.2, 0, 1, 0.01},
           ResetGroup::Cartoon, PreviewWhile(C::CheckCartoon),
           {"Cartoon threshold", "", "How strong an edge must be to become an outline"}),
    Slider(C::SliderCartoonQuantization, "sliderCartoonQuantization", 19, {10, 2, 24, 1},
           ResetGroup::Cartoon, PreviewWhile(C::CheckCartoon),
           {"Cartoon quantization", "levels", "How many steps each colour keeps"}),
    Check(C::CheckSketch, "checkSketch", 20, ResetGroup::None, kPreview,
          {"Sketch", "", "Switches black lines on white paper on"}),
    Slider(C::SliderSketchIntensity, "sliderSketchIntensity", 21, {0.8, 0, 1, 0.01},
           ResetGroup::Sketch, PreviewWhile(C::CheckSketch),
           {"Sketch intensity", "", "How strong an edge must be to be drawn"}),
    Slider(C::SliderSketchEdge, "sliderSketchEdge", 22, {1, 0, 5, 0.05}, ResetGroup::Sketch,
           PreviewWhile(C::CheckSketch),
           {"Sketch edge strength", "", "How much edges are strengthened"}),
    Check(C::CheckVignette, "checkVignette", 23, ResetGroup::None, kPreview,
          {"Vignette", "", "Switches dark corners on"}),
    Slider(C::SliderVignetteRadius, "sliderVignetteRadius", 24, {0, -0.25, 0.25, 0.005},
           ResetGroup::Vignette, PreviewWhile(C::CheckVignette),
           {"Vignette radius", "", "How far from the middle the darkness begins"}),

    // Caption
    Field(C::TextFieldText, "textFieldText", 25, "", {ValueRule::Free, 0, 0, ""}, std::nullopt,
          ResetGroup::Text, kTrackedText, {"Caption", "", "The text written on every frame"}),
    ColorWell(C::ColorWellTextColor, "colorWellTextColor", 26, ResetGroup::Text, kPreview,
              {"Caption colour", "", "The colour of the caption"}),
    PopUp(C::ComboTextFontType, "comboTextFontType", 29, 12, 19, ResetGroup::Text, kPreview,
          {"Font", "", "The family of the caption's letters"}),
    Field(C::TextFieldTextFontSize, "textFieldTextFontSize", 30, "80",
          {ValueRule::Integer, 0, 500, "80"}, C::StepperTextFontSize, ResetGroup::Text,
          kTrackedText, {"Font size", "px", "The size of the letters in the uncropped picture"}),
    Stepper(C::StepperTextFontSize, "stepperTextFontSize", 31, {80, 0, 500, 1},
            C::TextFieldTextFontSize, StepperText::Number, ResetGroup::Text, kPreviewAndSnapshot,
            {"Font size, step", "px", "Changes the font size by one"}),
    Field(C::TextFieldTextOpacity, "textFieldTextOpacity", 32, "70",
          {ValueRule::Integer, 0, 100, "70"}, C::StepperTextOpacity, ResetGroup::Text, kTrackedText,
          {"Opacity", "%", "How much the caption covers the picture"}),
    Stepper(C::StepperTextOpacity, "stepperTextOpacity", 33, {70, 0, 100, 1},
            C::TextFieldTextOpacity, StepperText::Number, ResetGroup::Text, kPreviewAndSnapshot,
            {"Opacity, step", "%", "Changes the opacity by one"}),
    PopUp(C::ComboTextPosition, "comboTextPosition", 34, 0, 4, ResetGroup::Text, kPreview,
          {"Caption position", "", "Where in the picture the caption stands"}),
    Field(C::TextFieldTextXOffset, "textFieldTextXOffset", 35, "0", kOffset, C::StepperTextXOffset,
          ResetGroup::Text, kTrackedText,
          {"Caption X offset", "px", "Moves the caption to the right"}),
    Stepper(C::StepperTextXOffset, "stepperTextXOffset", 36, {0, -10000, 10000, 1},
            C::TextFieldTextXOffset, StepperText::Whole, ResetGroup::Text, kPreviewAndSnapshot,
            {"Caption X offset, step", "px", "Changes the X offset by one"}),
    Field(C::TextFieldTextYOffset, "textFieldTextYOffset", 37, "0", kOffset, C::StepperTextYOffset,
          ResetGroup::Text, kTrackedText, {"Caption Y offset", "px", "Moves the caption upwards"}),
    Stepper(C::StepperTextYOffset, "stepperTextYOffset", 38, {0, -10000, 10000, 1},
            C::TextFieldTextYOffset, StepperText::Whole, ResetGroup::Text, kPreviewAndSnapshot,
            {"Caption Y offset, step", "px", "Changes the Y offset by one"}),
    Check(C::CheckTextShadow, "checkTextShadow", 39, ResetGroup::Text, kPreview,
          {"Shadow", "", "Gives the caption a soft shadow"}),
    Check(C::CheckTextStroke, "checkTextStroke", 40, ResetGroup::Text, kPreview,
          {"Outline", "", "Gives the letters a black outline"}),

    // Crop and resize
    Radio(C::RadioAutoCropTo, "radioAutoCropTo", 41, false, C::RadioCustomCropUsing,
          ResetGroup::CropResize, kPreviewAndGeometry,
          {"Crop to aspect ratio", "", "Cuts the largest middle part of the chosen shape"}),
    PopUp(C::ComboAspectRatio, "comboAspectRatio", 42, 0, 3, ResetGroup::None,
          PreviewAndGeometryWhile(C::RadioAutoCropTo),
          {"Aspect ratio", "", "The shape that is cut; turned for a portrait picture"}),
    Radio(C::RadioCustomCropUsing, "radioCustomCropUsing", 43, true, C::RadioAutoCropTo,
          ResetGroup::CropResize, kPreviewAndGeometry,
          {"Custom crop", "", "Cuts the rectangle given by X, Y, width and height"}),
    PopUp(C::ComboCustomCrop, "comboCustomCrop", 44, 0, 1, ResetGroup::CropResize,
          PreviewAndGeometryWhile(C::RadioCustomCropUsing),
          {"Crop unit", "", "Whether the rectangle is in per cent of the picture or in pixels"}),
    Field(C::TextFieldCustomCropOriginX, "textFieldCustomCropOriginX", 45, "0", kCrop,
          C::StepperCustomCropOriginX, ResetGroup::CropResize, kCropText,
          {"Crop X", "% or px", "The rectangle's distance from the left edge"}),
    Stepper(C::StepperCustomCropOriginX, "stepperCustomCropOriginX", 46, kCropOrigin,
            C::TextFieldCustomCropOriginX, StepperText::Whole, ResetGroup::CropResize, kCropStepper,
            {"Crop X, step", "% or px", "Changes the crop's X by one"}),
    Field(C::TextFieldCustomCropOriginY, "textFieldCustomCropOriginY", 47, "0", kCrop,
          C::StepperCustomCropOriginY, ResetGroup::CropResize, kCropText,
          {"Crop Y", "% or px", "The rectangle's distance from the bottom edge"}),
    Stepper(C::StepperCustomCropOriginY, "stepperCustomCropOriginY", 48, kCropOrigin,
            C::TextFieldCustomCropOriginY, StepperText::Whole, ResetGroup::CropResize, kCropStepper,
            {"Crop Y, step", "% or px", "Changes the crop's Y by one"}),
    Field(C::TextFieldCustomCropWidth, "textFieldCustomCropWidth", 49, "100", kCrop,
          C::StepperCustomCropWidth, ResetGroup::CropResize, kCropText,
          {"Crop width", "% or px", "The rectangle's width"}),
    Stepper(C::StepperCustomCropWidth, "stepperCustomCropWidth", 50, kCropExtent,
            C::TextFieldCustomCropWidth, StepperText::Whole, ResetGroup::CropResize, kCropStepper,
            {"Crop width, step", "% or px", "Changes the crop's width by one"}),
    Field(C::TextFieldCustomCropHeight, "textFieldCustomCropHeight", 51, "100", kCrop,
          C::StepperCustomCropHeight, ResetGroup::CropResize, kCropText,
          {"Crop height", "% or px", "The rectangle's height"}),
    Stepper(C::StepperCustomCropHeight, "stepperCustomCropHeight", 52, kCropExtent,
            C::TextFieldCustomCropHeight, StepperText::Whole, ResetGroup::CropResize, kCropStepper,
            {"Crop height, step", "% or px", "Changes the crop's height by one"}),
    Following(Field(C::TextFieldResizeTo, "textFieldResizeTo", 53, "100",
                    {ValueRule::Integer, 0, 1000, "100"}, C::StepperResizeTo,
                    ResetGroup::CropResize, kTrackedText,
                    {"Resize to", "%", "The output size in per cent of the crop"})),
    Stepper(C::StepperResizeTo, "stepperResizeTo", 54, {100, 0, 1000, 1}, C::TextFieldResizeTo,
            StepperText::WholeCeiling, ResetGroup::CropResize, kResizeStepper,
            {"Resize to, step", "%", "Changes the percentage by one"}),
    Following(Field(C::TextFieldDimensionsWidth, "textFieldDimensionsWidth", 55, "0", kOffset,
                    std::nullopt, ResetGroup::CropResize, kDimension,
                    {"Output width", "px", "The width of the frames; the height follows"})),
    Following(Field(C::TextFieldDimensionsHeight, "textFieldDimensionsHeight", 56, "0", kOffset,
                    std::nullopt, ResetGroup::CropResize, kDimension,
                    {"Output height", "px", "The height of the frames; the width follows"})),

    // Output
    Field(C::TextFieldFrameDelay, "textFieldFrameDelay", 57, "0.1", kSeconds, C::StepperFrameDelay,
          ResetGroup::Output, kNothing, {"Frame delay", "s", "How long each frame is shown"}),
    Stepper(C::StepperFrameDelay, "stepperFrameDelay", 58, {1, 0, 10 * kLongestSeconds, 1},
            C::TextFieldFrameDelay, StepperText::Tenths, ResetGroup::Output, kMarkOnly,
            {"Frame delay, step", "tenths of a second",
             "Changes the frame delay by a tenth of a second"}),
    Field(C::TextFieldLoopCount, "textFieldLoopCount", 59, "0", {ValueRule::Integer, 0, 10000, "0"},
          C::StepperLoopCount, ResetGroup::Output, kNothing,
          {"Loop count", "", "The repetitions written to the GIF; 0 writes none"}),
    Stepper(C::StepperLoopCount, "stepperLoopCount", 60, {0, 0, 10000, 1}, C::TextFieldLoopCount,
            StepperText::Whole, ResetGroup::Output, kMarkOnly,
            {"Loop count, step", "", "Changes the loop count by one"}),
    Check(C::CheckCustomColorCount, "checkCustomColorCount", 61, ResetGroup::Output, kMarkOnly,
          {"Custom colour count", "", "Reduces the levels of each colour channel"}),
    Slider(
        C::SliderCustomColorCount, "sliderCustomColorCount", 62, {32, 2, 64, 1}, ResetGroup::Output,
        kMarkOnly,
        {"Colour count", "levels", "Levels of each colour channel; 32 leaves the colours alone"}),
    InTail(
        Check(C::CheckRepeatForever, "checkRepeatForever", 0, ResetGroup::Output, kMarkOnly,
              {"Repeat forever", "", "The GIF starts again and again, whatever the loop count"})),
    InTail(Slider(C::SliderQuality, "sliderQuality", 0, {90, 1, 100, 1}, ResetGroup::Output,
                  kMarkOnly,
                  {"Quality", "", "Fewer bytes to the left, fewer errors to the right"})),
    InTail(Check(C::CheckMaxSize, "checkMaxSize", 0, ResetGroup::Output, kMarkOnly,
                 {"Limit the size of the GIF", "",
                  "Lowers the quality as far as needed to keep the file below a size"})),
    InTail(NumberField(C::FieldMaxSize, "fieldMaxSize", {8, 0.001, 100'000, 1}, ResetGroup::Output,
                       kMarkOnly,
                       {"Largest size in megabytes", "MB",
                        "The largest size of the file, in megabytes of 1,000,000 bytes"})),
    InTail(
        Check(C::CheckMaxWidth, "checkMaxWidth", 0, ResetGroup::Output, kMarkOnly,
              {"Limit the width of the GIF", "",
               "Scales frames that are wider on their way into the GIF; the list stays as it is"})),
    InTail(NumberField(C::FieldMaxWidth, "fieldMaxWidth", {480, 1, 65535, 1}, ResetGroup::Output,
                       kMarkOnly,
                       {"Largest width in pixels", "px", "The largest width of the GIF"})),
    InTail(Field(C::FieldOtherFont, "fieldOtherFont", 0, "", {ValueRule::Free, 0, 0, ""},
                 std::nullopt, ResetGroup::Text, kPreview,
                 {"Other font", "",
                  "A family, or Family:Style, in place of the font chosen from the list"})),
};

constexpr ControlRow OfUser(ControlRow row) {
    row.scope = SettingScope::User;
    return row;
}

constexpr std::array kUserTable = {
    OfUser(PopUp(C::Theme, "Theme", 0, 0, 2, ResetGroup::None, kNothing,
                 {"Theme", "", "Whether the window is light or dark"})),
};

constexpr bool StandInOrder(std::span<const ControlRow> rows, std::size_t first) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<std::size_t>(rows[i].control) != first + i) {
            return false;
        }
    }
    return true;
}
static_assert(kTable.size() == static_cast<std::size_t>(kControlCount));
static_assert(StandInOrder(kTable, 0) && StandInOrder(kUserTable, kTable.size()));

constexpr std::array kTracked = {
    C::TextFieldText,
    C::TextFieldTextFontSize,
    C::TextFieldTextOpacity,
    C::TextFieldTextXOffset,
    C::TextFieldTextYOffset,
    C::TextFieldCustomCropOriginX,
    C::TextFieldCustomCropOriginY,
    C::TextFieldCustomCropWidth,
    C::TextFieldCustomCropHeight,
    C::TextFieldResizeTo,
};

}  // namespace

std::span<const ControlRow> ControlTable() {
    return kTable;
}

std::span<const ControlRow> UserTable() {
    return kUserTable;
}

const ControlRow& RowOf(Control control) {
    const auto index = static_cast<std::size_t>(control);
    return index < kTable.size() ? kTable[index] : kUserTable[index - kTable.size()];
}

std::optional<Control> ControlByName(const QString& name) {
    const auto row = std::find_if(kTable.begin(), kTable.end(),
                                  [&](const ControlRow& r) { return name == r.name; });
    if (row == kTable.end()) {
        return std::nullopt;
    }
    return row->control;
}

std::span<const Control> TrackedFields() {
    return kTracked;
}

}  // namespace lumirra
