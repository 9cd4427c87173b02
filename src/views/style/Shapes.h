#pragma once

#include <QRectF>

class QPainter;
class QStyleOption;
class QColor;

namespace lumirra {

struct ThemeColors;

/// The shapes that the style and the window's own widgets share, so that they look alike.
namespace Shapes {

inline constexpr double kRadius = 6;
inline constexpr double kKnobDiameter = 16;
inline constexpr int kControlHeight = 28;

/// A filled rounded box with a one-pixel border.
void Box(QPainter& painter, const QRectF& rect, const QColor& fill, const QColor& border,
         double radius = kRadius);
/// The ring around what has the keyboard.
void FocusRing(QPainter& painter, const QRectF& rect, const ThemeColors& colors,
               double radius = kRadius);
/// A field: where text or a number is typed.
void Field(QPainter& painter, const QRectF& rect, const ThemeColors& colors, bool enabled,
           bool focused);
/// A slider's knob, with its focus ring.
void Knob(QPainter& painter, const QRectF& rect, const ThemeColors& colors, bool enabled,
          bool focused, bool hovered);
/// A small arrow head centred in `rect`.
void Arrow(QPainter& painter, const QRectF& rect, const QColor& color, bool up);

}  // namespace Shapes
}  // namespace lumirra
