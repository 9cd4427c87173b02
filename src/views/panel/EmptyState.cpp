#include "views/panel/EmptyState.h"

#include <QPainter>

#include "views/Icons.h"
#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {

EmptyState::EmptyState(QWidget* parent) : QWidget(parent) {}

void EmptyState::setIconName(const QString& name) {
    iconName_ = name;
    update();
}

void EmptyState::setText(const QString& text) {
    text_ = text;
    setAccessibleName(text);
    update();
}

void EmptyState::setFramed(bool framed) {
    framed_ = framed;
    update();
}

void EmptyState::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (framed_) {
        const ThemeColors& colors = ColorsOf(palette());
        Shapes::Box(painter, rect(), colors.canvas, colors.border);
    }
    DrawEmptyState(painter, QRectF(rect()).adjusted(12, 12, -12, -12), palette(), iconName_, text_);
}

void DrawEmptyState(QPainter& painter, const QRectF& rect, const QPalette& palette,
                    const QString& iconName, const QString& text) {
    const ThemeColors& colors = ColorsOf(palette);
    const int flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    const QRectF words = painter.boundingRect(rect, flags, text);
    double pictureHeight = std::min(96.0, std::min(rect.height() * 0.4, rect.width() * 0.5));
    if (rect.height() < words.height() + 44) {
        pictureHeight = 0;
    }
    const double gap = pictureHeight > 0 ? 12 : 0;
    const double top = rect.center().y() - (pictureHeight + gap + words.height()) / 2;
    if (pictureHeight > 0) {
        QColor color = colors.textDim;
        color.setAlphaF(0.75F);
        DrawIcon(painter, iconName,
                 QRectF(rect.center().x() - pictureHeight, top, pictureHeight * 2, pictureHeight),
                 color);
    }
    painter.setPen(colors.textDim);
    painter.drawText(QRectF(rect.x(), top + pictureHeight + gap, rect.width(), words.height() + 4),
                     flags, text);
}

}  // namespace lumirra
