#include "settings/SettingsRecords.h"

#include "settings/ValueRules.h"

namespace lumirra {
namespace {

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
    settings.aspectRatioIndex = values.Index(C::ComboAspectRatio);
    settings.customCropOn = values.IsOn(C::RadioCustomCropUsing);
    settings.customCropUnit = values.Index(C::ComboCustomCrop);
    settings.cropX = FieldFloat(values, C::TextFieldCustomCropOriginX);
    settings.cropY = FieldFloat(values, C::TextFieldCustomCropOriginY);
    settings.cropWidth = FieldFloat(values, C::TextFieldCustomCropWidth);
    settings.cropHeight = FieldFloat(values, C::TextFieldCustomCropHeight);
}

void TakeCaption(EffectSettings& settings, const ControlValues& values) {
    settings.text = values.Text(C::TextFieldText);
    settings.fontIndex = values.Index(C::ComboTextFontType);
    settings.fontSize = values.Number(C::StepperTextFontSize);
    settings.textColor = values.Color(C::ColorWellTextColor);
    settings.textPositionIndex = values.Index(C::ComboTextPosition);
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
            .playModeIndex = values.Index(C::ComboPlayMode),
            .width = static_cast<double>(FieldFloat(values, C::TextFieldDimensionsWidth)),
            .height = static_cast<double>(FieldFloat(values, C::TextFieldDimensionsHeight)),
            .resizePercent = FieldFloat(values, C::TextFieldResizeTo),
            .effects = EffectSettingsOf(values)};
}

OutputSettings OutputSettingsOf(const ControlValues& values) {
    return {.colorLevels = ColorLevels(values),
            .delaySeconds = NumberInForce(values, C::TextFieldFrameDelay),
            .loopCount = NumberInForce(values, C::TextFieldLoopCount)};
}

}  // namespace lumirra
