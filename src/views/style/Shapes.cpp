#include "views/style/Shapes.h"

#include <QPainter>
#include <QPen>

#include "views/style/Colors.h"

namespace lumirra::Shapes {

void Box(QPainter& painter, const QRectF& rect, const QColor& fill, const QColor& border,
         double radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(border, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
}

void FocusRing(QPainter& painter, const QRectF& rect, const ThemeColors& colors, double radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.accent, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
    painter.restore();
}

void Field(QPainter& painter, const QRectF& rect, const ThemeColors& colors, bool enabled,
           bool focused) {
    Box(painter, rect, enabled ? colors.field : colors.window, colors.border);
    if (focused && enabled) {
        FocusRing(painter, rect, colors);
    }
}

void Knob(QPainter& painter, const QRectF& rect, const ThemeColors& colors, bool enabled,
          bool focused, bool hovered) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(enabled ? (hovered ? colors.accent : colors.knobBorder) : colors.border, 1));
    painter.setBrush(enabled ? colors.knob : colors.window);
    painter.drawEllipse(rect.adjusted(0.5, 0.5, -0.5, -0.5));
    if (focused && enabled) {
        painter.setPen(QPen(colors.accent, 2.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(rect.adjusted(0.5, 0.5, -0.5, -0.5));
    }
    painter.restore();
}

void Arrow(QPainter& painter, const QRectF& rect, const QColor& color, bool up) {
    const QPointF centre = rect.center();
    const double rise = up ? -1.75 : 1.75;
    const QPointF points[] = {centre + QPointF(-3.5, -rise), centre + QPointF(0, rise),
                              centre + QPointF(3.5, -rise)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(points, 3);
    painter.restore();
}

}  // namespace lumirra::Shapes
