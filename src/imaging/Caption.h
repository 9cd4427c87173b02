#pragma once

#include <QImage>
#include <QString>

#include "imaging/EffectSettings.h"

namespace lumirra::ImageTools {

struct CaptionStyle {
    QString text;
    QString fontName;     ///< a family
    QString fontStyle;    ///< "Bold Italic"; empty: the regular one
    float fontSize = 80;  ///< pixels
    TextColor color;
    CaptionPosition position = CaptionPosition::BottomLeft;
    float xOffset = 0;
    float yOffset = 0;
    bool shadowOn = false;
    bool strokeOn = false;
};

/// The transparent caption layer for a picture of width x height. Any thread.
QImage RenderTextLayer(int width, int height, const CaptionStyle& style);

/// The caption blended over the picture with `opacity` 0..1; the picture's alpha is kept.
QImage DrawTextOverlay(const QImage& image, const CaptionStyle& style, float opacity,
                       int threads = 1);

}  // namespace lumirra::ImageTools
