#include "settings/SettingsRecords.h"

#include <cmath>

#include "settings/ValueRules.h"

namespace lumirra {
namespace {

// An index lies in its pop-up, and the items stand in the order of the enumerators.

using C = Control;

float FieldFloat(const ControlValues& values, Control field) {
    return static_cast<float>(NumberInForce(values, field));
}

void TakeAdjustments(EffectSettings& settings, const ControlValues& values) {
    settings.brightness = values.Number(C::SliderBrightness);
    settings.contrast = values.Number(C::SliderContrast);
    settings.saturation = values.Number(C::SliderSaturation);
    settings.exposure = values.Number(C::SliderExposure);
    settings.gamma = values.Number(C::SliderGamma);
    settings.hue = values.Number(C::SliderHue);
}

void TakeEffects(EffectSettings& settings, const ControlValues& values) {
    settings.colorEffectOn = values.IsOn(C::CheckColorEffect);
    settings.colorEffectName =
        PopUpItems(C::ComboColorEffect).at(values.Index(C::ComboColorEffect));
    settings.cartoonOn = values.IsOn(C::CheckCartoon);
    settings.cartoonBlur = values.Number(C::SliderCartoonBlur);
    settings.cartoonThreshold = values.Number(C::SliderCartoonThreshold);
    settings.cartoonQuantization = values.Number(C::SliderCartoonQuantization);
    settings.sketchOn = values.IsOn(C::CheckSketch);
    settings.sketchIntensity = values.Number(C::SliderSketchIntensity);
    settings.sketchEdge = values.Number(C::SliderSketchEdge);
    settings.vignetteOn = values.IsOn(C::CheckVignette);
    settings.vignetteRadius = values.Number(C::SliderVignetteRadius);
}

void TakeCrop(EffectSettings& settings, const ControlValues& values) {
    settings.autoCropOn = values.IsOn(C::RadioAutoCropTo);
    settings.aspectRatio = static_cast<AspectRatio>(values.Index(C::ComboAspectRatio));
    settings.customCropOn = values.IsOn(C::RadioCustomCropUsing);
    settings.customCropUnit = static_cast<CropUnit>(values.Index(C::ComboCustomCrop));
    settings.cropX = FieldFloat(values, C::TextFieldCustomCropOriginX);
    settings.cropY = FieldFloat(values, C::TextFieldCustomCropOriginY);
    settings.cropWidth = FieldFloat(values, C::TextFieldCustomCropWidth);
    settings.cropHeight = FieldFloat(values, C::TextFieldCustomCropHeight);
}

void TakeCaption(EffectSettings& settings, const ControlValues& values) {
    settings.text = values.Text(C::TextFieldText);
    settings.fontIndex = values.Index(C::ComboTextFontType);
    settings.otherFont = values.Text(C::FieldOtherFont);
    settings.fontSize = values.Number(C::StepperTextFontSize);
    settings.textColor = values.Color(C::ColorWellTextColor);
    settings.textPosition = static_cast<CaptionPosition>(values.Index(C::ComboTextPosition));
    settings.textXOffset = values.Number(C::StepperTextXOffset);
    settings.textYOffset = values.Number(C::StepperTextYOffset);
    settings.textOpacity = values.Number(C::StepperTextOpacity);
    settings.textShadowOn = values.IsOn(C::CheckTextShadow);
    settings.textStrokeOn = values.IsOn(C::CheckTextStroke);
}

int ColorLevels(const ControlValues& values) {
    constexpr int kAllLevels = 256;
    const float slider = values.Number(C::SliderCustomColorCount);
    // The slider at rest means that no count was chosen yet.
    if (!values.IsOn(C::CheckCustomColorCount) || slider == 32) {
        return kAllLevels;
    }
    return static_cast<int>(slider);
}

constexpr double kMegabyte = 1e6;

long long BytesOf(float megabytes) {
    return std::llround(static_cast<double>(megabytes) * kMegabyte);
}

}  // namespace

EffectSettings EffectSettingsOf(const ControlValues& values, float position) {
    EffectSettings settings;
    settings.position = position;
    TakeAdjustments(settings, values);
    TakeEffects(settings, values);
    TakeCrop(settings, values);
    TakeCaption(settings, values);
    return settings;
}

CaptureSettings CaptureSettingsOf(const ControlValues& values) {
    return {.effects = EffectSettingsOf(values),
            .width = static_cast<int>(FieldFloat(values, C::TextFieldDimensionsWidth)),
            .height = static_cast<int>(FieldFloat(values, C::TextFieldDimensionsHeight))};
}

ExtractionSettings ExtractionSettingsOf(const ControlValues& values) {
    return {.fixedNumber = values.IsOn(C::RadioFixedNumberOfFrames),
            .frameCount = FieldFloat(values, C::TextFieldFixedNumberOfFrames),
            .intervalSeconds = NumberInForce(values, C::TextFieldFixedIntervalBetweenFrames),
            .playMode = static_cast<PlayMode>(values.Index(C::ComboPlayMode)),
            .width = static_cast<double>(FieldFloat(values, C::TextFieldDimensionsWidth)),
            .height = static_cast<double>(FieldFloat(values, C::TextFieldDimensionsHeight)),
            .resizePercent = FieldFloat(values, C::TextFieldResizeTo),
            .effects = EffectSettingsOf(values)};
}

OutputSettings OutputSettingsOf(const ControlValues& values) {
    return {.colorLevels = ColorLevels(values),
            .delaySeconds = NumberInForce(values, C::TextFieldFrameDelay),
            .loopCount = NumberInForce(values, C::TextFieldLoopCount),
            .repeatForever = values.IsOn(C::CheckRepeatForever),
            .quality = static_cast<double>(values.Number(C::SliderQuality)),
            .maxBytes = values.IsOn(C::CheckMaxSize) ? BytesOf(values.Number(C::FieldMaxSize)) : 0,
            .maxWidth = values.IsOn(C::CheckMaxWidth)
                            ? static_cast<int>(std::lround(values.Number(C::FieldMaxWidth)))
                            : 0};
}

ControlValues WithMaxBytes(ControlValues values, long long bytes) {
    auto megabytes = static_cast<float>(static_cast<double>(bytes) / kMegabyte);
    while (BytesOf(megabytes) > bytes) {
        megabytes = std::nextafter(megabytes, 0.0F);
    }
    values.SetOn(C::CheckMaxSize, true);
    values.SetNumber(C::FieldMaxSize, megabytes);
    return values;
}

ControlValues WithMaxWidth(ControlValues values, int width) {
    values.SetOn(C::CheckMaxWidth, true);
    values.SetNumber(C::FieldMaxWidth, static_cast<float>(width));
    return values;
}

}  // namespace lumirra
