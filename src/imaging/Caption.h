#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

#include "imaging/EffectSettings.h"

namespace lumirra::ImageTools {

/// The twenty caption families, in the order of the pop-up.
const QStringList& CaptionFontNames();

/// The name of that index when the family is installed, else the first installed family; empty for
/// an index outside 0..19. Needs a QGuiApplication.
QString FontNameForIndex(int index);

struct CaptionStyle {
    QString text;
    QString fontName;
    float fontSize = 80;  ///< pixels
    TextColor color;
    int positionIndex = 0;
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
