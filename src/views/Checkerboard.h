#pragma once

#include <QRectF>

class QPainter;

namespace lumirra {

struct ThemeColors;

/// The squares that stand for "transparent" behind a picture, `side` pixels each.
void DrawCheckerboard(QPainter& painter, const QRectF& rect, const ThemeColors& colors,
                      int side = 8);

}  // namespace lumirra
