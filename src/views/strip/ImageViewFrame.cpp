#include "views/strip/ImageViewFrame.h"

#include <QPainter>
#include <cmath>

#include "views/Checkerboard.h"
#include "views/Icons.h"
#include "views/style/Colors.h"

namespace lumirra {
namespace {

constexpr int kSelectedBorder = 4;
constexpr int kBorder = 3;
constexpr int kKeyboardRing = 2;
constexpr int kCaptionGap = 4;  ///< from the border
constexpr double kMovedOpacity = 0.35;

QColor SelectedColor() {
    return QColor::fromRgbF(0.19F, 0.54F, 0.99F);
}

/// A frame of that width along the inside of `rect`, its edges on whole pixels.
void DrawBorder(QPainter& painter, const QRect& rect, int width, const QColor& color) {
    painter.fillRect(rect.x(), rect.y(), rect.width(), width, color);
    painter.fillRect(rect.x(), rect.bottom() + 1 - width, rect.width(), width, color);
    painter.fillRect(rect.x(), rect.y() + width, width, rect.height() - 2 * width, color);
    painter.fillRect(rect.right() + 1 - width, rect.y() + width, width, rect.height() - 2 * width,
                     color);
}

void DrawPicture(QPainter& painter, const QRect& cell, const QImage& picture,
                 const ThemeColors& colors) {
    const double scale = painter.device()->devicePixelRatioF();
    // On whole pixels of the device, where it is as sharp as it was made.
    const auto middle = [scale](int free, int taken) {
        return std::floor((free * scale - taken) / 2) / scale;
    };
    const QRectF place(cell.x() + middle(cell.width(), picture.width()),
                       cell.y() + middle(cell.height(), picture.height()), picture.width() / scale,
                       picture.height() / scale);
    if (picture.hasAlphaChannel() && painter.opacity() == 1) {
        DrawCheckerboard(painter, place, colors);
    }
    painter.drawImage(place, picture);
}

void DrawMissing(QPainter& painter, const QRect& cell, const ThemeColors& colors) {
    QRectF place(0, 0, 72, 54);
    place.moveCenter(QRectF(cell).center());
    DrawIcon(painter, QStringLiteral("picture-missing"), place, colors.textDim);
}

QRectF PillFor(const QPainter& painter, const QString& words) {
    const QSize text = painter.fontMetrics().size(Qt::TextSingleLine, words);
    return {0, 0, text.width() + 14.0, text.height() + 6.0};
}

void DrawPill(QPainter& painter, const QRectF& pill, const QString& words) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 170));
    painter.drawRoundedRect(pill, 5, 5);
    painter.setPen(Qt::white);
    painter.drawText(pill, Qt::AlignCenter, words);
    painter.restore();
}

void DrawCaption(QPainter& painter, const QRect& inside, const QString& caption) {
    QRectF pill = PillFor(painter, caption);
    pill.moveBottomLeft(inside.bottomLeft() + QPointF(kCaptionGap, 1 - kCaptionGap));
    DrawPill(painter, pill, caption);
}

void DrawBadge(QPainter& painter, const QRect& inside, const QString& badge) {
    QRectF pill = PillFor(painter, badge);
    pill.moveTopRight(inside.topRight() + QPointF(1 - kCaptionGap, kCaptionGap));
    DrawPill(painter, pill, badge);
}

}  // namespace

void ImageViewFrame::Draw(QPainter& painter, const QRect& cell, const QPalette& palette) const {
    const ThemeColors& colors = ColorsOf(palette);
    painter.fillRect(cell, colors.cell);
    painter.setOpacity(isMoved ? kMovedOpacity : 1);
    if (thumbnail != nullptr && thumbnail->isNull()) {
        DrawMissing(painter, cell, colors);
    } else if (thumbnail != nullptr) {
        DrawPicture(painter, cell, *thumbnail, colors);
    }
    const bool selected = look == CellLook::Selected;
    const int border = selected ? kSelectedBorder : kBorder;
    const QRect inside = cell.adjusted(border, border, -border, -border);
    if (look != CellLook::Fresh) {
        DrawBorder(painter, cell, border, selected ? SelectedColor() : QColor(Qt::white));
    }
    if (hasKeyboard) {
        DrawBorder(painter, inside, kKeyboardRing, selected ? QColor(Qt::white) : colors.accent);
    }
    if (!caption.isEmpty()) {
        DrawCaption(painter, inside, caption);
    }
    if (!badge.isEmpty()) {
        DrawBadge(painter, inside, badge);
    }
    painter.setOpacity(1);
}

}  // namespace lumirra
