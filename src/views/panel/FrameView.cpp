#include "views/panel/FrameView.h"

#include <QPainter>

#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {

FrameView::FrameView(QWidget* parent) : VideoImageView(parent) {
    setAcceptDrops(false);
}

void FrameView::SetHint(const QString& hint) {
    hint_ = hint;
    setAccessibleName(hint);
    update();
}

void FrameView::showEvent(QShowEvent* event) {
    raise();
    VideoImageView::showEvent(event);
}

void FrameView::paintEvent(QPaintEvent* event) {
    const ThemeColors& colors = ColorsOf(palette());
    {
        QPainter behind(this);
        behind.fillRect(rect(), colors.canvas);
    }
    VideoImageView::paintEvent(event);
    if (hint_.isEmpty()) {
        return;
    }
    QPainter painter(this);
    const QRectF room = QRectF(rect()).adjusted(18, 14, -18, -14);
    QRectF text = painter.boundingRect(room, Qt::AlignLeft | Qt::AlignBottom, hint_);
    Shapes::Box(painter, text.adjusted(-10, -6, 10, 6), colors.surface, colors.border);
    painter.setPen(colors.text);
    painter.drawText(text, Qt::AlignCenter, hint_);
}

void FrameView::mousePressEvent(QMouseEvent*) {
    Q_EMIT Dismissed();
}

}  // namespace lumirra
