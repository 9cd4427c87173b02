#pragma once

#include <QImage>
#include <optional>

#include "imaging/kernels/ColorSteps.h"

namespace lumirra {

struct Cartoon {
    float blur = 0;
    float threshold = 0;
    float quantization = 0;
};

struct Sketch {
    float intensity = 0;
    float edge = 0;
};

/// Effects that read a pixel's neighbours, with the color steps before and the vignette after.
struct EdgeEffects {
    ColorSteps steps;
    std::optional<Cartoon> cartoon;
    std::optional<Sketch> sketch;
    std::optional<Vignette> vignette;
};

/// The steps, cartoon, sketch and vignette in one pass over the picture, in floats up to the final
/// rounding. The picture is RGBA8888 and has area; null when there is no memory for the result.
QImage ApplyEdgeEffects(const QImage& image, const EdgeEffects& effects, int threads);

}  // namespace lumirra
