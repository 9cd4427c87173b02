#include "imaging/Adjustments.h"

#include "imaging/Render.h"

namespace lumirra::ImageTools {

namespace {

/// Each adjustment is the chain with that one setting.
QImage Adjust(const QImage& image, float EffectSettings::*setting, float value) {
    EffectSettings settings;
    settings.*setting = value;
    return ApplyEffectChain(image, settings);
}

}  // namespace

QImage AdjustBrightness(const QImage& image, float brightness) {
    return Adjust(image, &EffectSettings::brightness, brightness);
}

QImage AdjustContrast(const QImage& image, float contrast) {
    return Adjust(image, &EffectSettings::contrast, contrast);
}

QImage AdjustSaturation(const QImage& image, float saturation) {
    return Adjust(image, &EffectSettings::saturation, saturation);
}

QImage AdjustExposure(const QImage& image, float exposure) {
    return Adjust(image, &EffectSettings::exposure, exposure);
}

QImage AdjustGamma(const QImage& image, float gamma) {
    return Adjust(image, &EffectSettings::gamma, gamma);
}

QImage AdjustHue(const QImage& image, float degrees) {
    return Adjust(image, &EffectSettings::hue, degrees);
}

}  // namespace lumirra::ImageTools
