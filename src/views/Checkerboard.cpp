#include "views/Checkerboard.h"

#include <QImage>
#include <QPainter>

#include "views/style/Colours.h"

namespace lumirra {

void DrawCheckerboard(QPainter& painter, const QRectF& rect, const ThemeColours& colours,
                      int side) {
    QImage tile(2 * side, 2 * side, QImage::Format_RGB32);
    tile.fill(colours.checkerLight);
    QPainter tilePainter(&tile);
    tilePainter.fillRect(0, 0, side, side, colours.checkerDark);
    tilePainter.fillRect(side, side, side, side, colours.checkerDark);
    tilePainter.end();
    QBrush brush(tile);
    brush.setTransform(QTransform::fromTranslate(rect.x(), rect.y()));
    painter.fillRect(rect, brush);
}

}  // namespace lumirra
