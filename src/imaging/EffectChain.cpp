#include "imaging/PictureFormat.h"
#include "imaging/Render.h"
#include "imaging/kernels/ColorPass.h"
#include "imaging/kernels/EdgeEffects.h"

namespace lumirra::ImageTools {

namespace {

EdgeEffects EffectsOf(const EffectSettings& settings, const QImage& image) {
    EdgeEffects effects;
    effects.steps = ColorStepsOf(settings);
    if (settings.cartoonOn) {
        effects.cartoon = Cartoon{settings.cartoonBlur, settings.cartoonThreshold,
                                  UsableQuantization(settings.cartoonQuantization)};
    }
    if (settings.sketchOn) {
        effects.sketch = Sketch{settings.sketchIntensity, settings.sketchEdge};
    }
    if (settings.vignetteOn) {
        effects.vignette = VignetteOf(settings.vignetteRadius, image.width(), image.height());
    }
    return effects;
}

}  // namespace

QImage ApplyEffectChain(const QImage& image, const EffectSettings& settings, int threads) {
    QImage source = AsRgba8888(image);
    if (source.isNull()) {
        return source;
    }
    const EdgeEffects effects = EffectsOf(settings, source);
    if (effects.cartoon || effects.sketch) {
        return ApplyEdgeEffects(source, effects, threads);
    }
    return ApplyColorSteps(source, effects.steps, effects.vignette, threads);
}

}  // namespace lumirra::ImageTools
