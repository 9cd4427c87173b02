#include "imaging/Effects.h"

#include "imaging/PictureFormat.h"
#include "imaging/Render.h"
#include "imaging/kernels/ColorPass.h"

namespace lumirra::ImageTools {

// Each effect is the chain with that one effect on.

QImage ApplyColorEffect(const QImage& image, const QString& name) {
    EffectSettings settings;
    settings.colorEffectOn = true;
    settings.colorEffectName = name;
    return ApplyEffectChain(image, settings);
}

QImage ApplyCartoon(const QImage& image, float blur, float threshold, float quantization) {
    EffectSettings settings;
    settings.cartoonOn = true;
    settings.cartoonBlur = blur;
    settings.cartoonThreshold = threshold;
    settings.cartoonQuantization = quantization;
    return ApplyEffectChain(image, settings);
}

QImage ApplySketch(const QImage& image, float intensity, float edge) {
    EffectSettings settings;
    settings.sketchOn = true;
    settings.sketchIntensity = intensity;
    settings.sketchEdge = edge;
    return ApplyEffectChain(image, settings);
}

QImage ApplyVignette(const QImage& image, float radius) {
    EffectSettings settings;
    settings.vignetteOn = true;
    settings.vignetteRadius = radius;
    return ApplyEffectChain(image, settings);
}

QImage Posterize(const QImage& image, int levels) {
    QImage source = AsRgba8888(image);
    if (source.isNull()) {
        return source;
    }
    ColorSteps steps;
    steps.quantization = UsableQuantization(static_cast<float>(levels));
    return ApplyColorSteps(source, steps, std::nullopt, 1);
}

}  // namespace lumirra::ImageTools
