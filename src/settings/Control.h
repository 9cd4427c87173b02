#pragma once

#include <QLatin1String>
#include <QStringList>
#include <optional>
#include <span>

namespace lumirra {

/// Every setting control of the window, in the order of the profile's lines.
enum class Control {
    RadioFixedNumberOfFrames,
    TextFieldFixedNumberOfFrames,
    StepperFixedNumberOfFrames,
    RadioFixedIntervalBetweenFrames,
    TextFieldFixedIntervalBetweenFrames,
    StepperFixedIntervalBetweenFrames,
    ComboPlayMode,
    SliderBrightness,
    SliderContrast,
    SliderSaturation,
    SliderExposure,
    SliderGamma,
    SliderHue,
    CheckColorEffect,
    ComboColorEffect,
    CheckCartoon,
    SliderCartoonBlur,
    SliderCartoonThreshold,
    SliderCartoonQuantization,
    CheckSketch,
    SliderSketchIntensity,
    SliderSketchEdge,
    CheckVignette,
    SliderVignetteRadius,
    TextFieldText,
    ColorWellTextColor,
    ComboTextFontType,
    TextFieldTextFontSize,
    StepperTextFontSize,
    TextFieldTextOpacity,
    StepperTextOpacity,
    ComboTextPosition,
    TextFieldTextXOffset,
    StepperTextXOffset,
    TextFieldTextYOffset,
    StepperTextYOffset,
    CheckTextShadow,
    CheckTextStroke,
    RadioAutoCropTo,
    ComboAspectRatio,
    RadioCustomCropUsing,
    ComboCustomCrop,
    TextFieldCustomCropOriginX,
    StepperCustomCropOriginX,
    TextFieldCustomCropOriginY,
    StepperCustomCropOriginY,
    TextFieldCustomCropWidth,
    StepperCustomCropWidth,
    TextFieldCustomCropHeight,
    StepperCustomCropHeight,
    TextFieldResizeTo,
    StepperResizeTo,
    TextFieldDimensionsWidth,
    TextFieldDimensionsHeight,
    TextFieldFrameDelay,
    StepperFrameDelay,
    TextFieldLoopCount,
    StepperLoopCount,
    CheckCustomColorCount,
    SliderCustomColorCount,
};
inline constexpr int kControlCount = static_cast<int>(Control::SliderCustomColorCount) + 1;

enum class ControlKind { Slider, Stepper, Check, Radio, PopUp, Text, Color };

/// What a text field accepts when its text is committed.
enum class ValueRule {
    None,     ///< not a text field
    Free,     ///< any text
    Integer,  ///< a whole number within the row's limits
    Decimal,  ///< a number above the minimum and up to the maximum
    Crop,     ///< a whole number within the limits of the crop unit
};

/// How a stepper's value is shown in its field.
enum class StepperText {
    Whole,         ///< "%.0f"
    WholeCeiling,  ///< rounded up first
    Tenths,        ///< a tenth of it, "%.1f"
    Number,        ///< as it is, without a fraction when it has none
};

enum class ResetGroup { None, Adjust, Cartoon, Sketch, Vignette, Text, CropResize, Output };

/// How a control is written in its profile line.
enum class ProfileCoding {
    Integer,  ///< state or index
    Float,    ///< up to six digits
    Text,     ///< as it is
    Color,    ///< three lines of up to fifteen digits: red, green, blue
};

enum class MarkModified { Never, Always, WhenTextDiffers };

/// What a change by the user asks of the window beyond storing the value.
struct ChangeRule {
    bool preview = false;                    ///< render the preview again
    bool geometry = false;                   ///< then work out the output dimensions again
    std::optional<Control> onlyWhenOn = {};  ///< both only while this one is on
    bool snapshot = false;                   ///< note the tracked texts as accepted
    bool onlyWhenTextDiffers = false;  ///< preview, geometry and snapshot; against the snapshot
    MarkModified mark = MarkModified::Always;
};

/// One row of the table that everything about the controls follows from.
struct ControlRow {
    Control control;
    QLatin1String name;  ///< outlet name, also the name on the command line
    ControlKind kind;
    double initial = 0;              ///< number, state or index; 1 for all components of the colour
    QLatin1String initialText = {};  ///< of a text field
    /// Range of a slider, stepper or pop-up and limits of a text field; [0, 1] for a state. The
    /// crop rows hold the widest one, `RangeInForce` narrows it.
    double minimum = 0;
    double maximum = 1;
    double step = 1;  ///< of a slider or stepper
    ValueRule rule = ValueRule::None;
    QLatin1String fallback = {};          ///< what text that is no number becomes
    std::optional<Control> partner = {};  ///< field and stepper, or the two radios of a pair
    StepperText stepperText = StepperText::Whole;
    ResetGroup resetGroup = ResetGroup::None;
    int profileLine = 0;  ///< from 1
    ProfileCoding coding = ProfileCoding::Integer;
    ChangeRule change = {};
    const char* label = "";    ///< what a person would call it
    const char* unit = "";     ///< "" when it has none
    const char* tooltip = "";  ///< what it does, one sentence
};

/// All rows, in the order of `Control`.
std::span<const ControlRow> ControlTable();
const ControlRow& RowOf(Control control);

/// By outlet name, exactly spelled.
std::optional<Control> ControlByName(const QString& name);

/// The items of a pop-up, empty for any other control.
const QStringList& PopUpItems(Control control);

/// The text fields whose last accepted text is remembered.
std::span<const Control> TrackedFields();

}  // namespace lumirra
