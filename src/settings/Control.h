#pragma once

#include <QLatin1String>
#include <QStringList>
#include <optional>
#include <span>

namespace lumirra {

/// Every setting: the project's, in the order of the profile's lines and then of its tail, and the
/// user's.
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
    CheckRepeatForever,
    SliderQuality,
    CheckMaxSize,
    FieldMaxSize,
    CheckMaxWidth,
    FieldMaxWidth,
    FieldOtherFont,
    Theme,
};
/// Of the project's settings, which come first.
inline constexpr int kControlCount = static_cast<int>(Control::FieldOtherFont) + 1;

enum class ControlKind {
    Slider,
    Stepper,  ///< changes the field beside it
    Number,   ///< a field of numbers without a stepper of its own
    Check,
    Radio,
    PopUp,
    Text,
    Color
};

/// Who a setting belongs to and where it is kept.
enum class SettingScope {
    ProfileLine,  ///< the project; a line of the profile
    ProfileTail,  ///< the project; the profile's last piece, where it differs from its initial
                  ///< value
    User,         ///< the user, whatever the project; the user's settings file
};

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
    /// Range of a number or pop-up and limits of a text field; [0, 1] for a state. The
    /// crop rows hold the widest one, `RangeInForce` narrows it.
    double minimum = 0;
    double maximum = 1;
    double step = 1;  ///< of a number
    ValueRule rule = ValueRule::None;
    bool followsOthers = false;   ///< what follows from another field may lie beyond the limits
    QLatin1String fallback = {};  ///< what text that is no number becomes
    std::optional<Control> partner = {};  ///< field and stepper, or the two radios of a pair
    StepperText stepperText = StepperText::Whole;
    ResetGroup resetGroup = ResetGroup::None;
    SettingScope scope = SettingScope::ProfileLine;
    int profileLine = 0;  ///< from 1; 0 outside that scope
    ProfileCoding coding = ProfileCoding::Integer;
    ChangeRule change = {};
    const char* label = "";    ///< what a person would call it
    const char* unit = "";     ///< "" when it has none
    const char* tooltip = "";  ///< what it does, one sentence
};

/// The rows of the project's settings, in the order of `Control`.
std::span<const ControlRow> ControlTable();
/// The rows of scope `User`.
std::span<const ControlRow> UserTable();
/// Of any scope.
const ControlRow& RowOf(Control control);

/// A setting of the project by its outlet name, exactly spelled.
std::optional<Control> ControlByName(const QString& name);

/// The items of a pop-up, empty for any other control.
const QStringList& PopUpItems(Control control);

/// The text fields whose last accepted text is remembered.
std::span<const Control> TrackedFields();

}  // namespace lumirra
