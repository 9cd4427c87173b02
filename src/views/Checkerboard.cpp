#include "views/Checkerboard.h"

#include <QImage>
#include <QPainter>

#include "views/style/Colors.h"

namespace lumirra {

void DrawCheckerboard(QPainter& painter, const QRectF& rect, const ThemeColors& colors, int side) {
    QImage tile(2 * side, 2 * side, QImage::Format_RGB32);
    tile.fill(colors.checkerLight);
    QPainter tilePainter(&tile);
    tilePainter.fillRect(0, 0, side, side, colors.checkerDark);
    tilePainter.fillRect(side, side, side, side, colors.checkerDark);
    tilePainter.end();
    QBrush brush(tile);
    brush.setTransform(QTransform::fromTranslate(rect.x(), rect.y()));
    painter.fillRect(rect, brush);
}

}  // namespace lumirra
