#include "views/panel/VideoImageView.h"

#include <QDragEnterEvent>
#include <QImageReader>
#include <QPainter>
#include <QTimer>

#include "views/Checkerboard.h"
#include "views/ScreenPicture.h"
#include "views/panel/EmptyState.h"
#include "views/panel/FileDrop.h"
#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {
namespace {

/// Longer than the gap between two pictures of a drag, shorter than anyone waits.
constexpr int kSettleMs = 70;

}  // namespace

VideoImageView::VideoImageView(QWidget* parent) : QWidget(parent), settle_(new QTimer(this)) {
    setAcceptDrops(true);
    settle_->setSingleShot(true);
    settle_->setInterval(kSettleMs);
    connect(settle_, &QTimer::timeout, this, qOverload<>(&QWidget::update));
}

void VideoImageView::SetImage(const QImage& image) {
    image_ = image;
    scaled_ = {};
    settle_->start();
    update();
    Q_EMIT StateChanged();
}

void VideoImageView::SetProblem(const QString& text) {
    if (text != problem_) {
        problem_ = text;
        update();
        Q_EMIT StateChanged();
    }
}

bool VideoImageView::IsEmptyState() const {
    return Image().isNull() && problem_.isEmpty();
}

QRectF VideoImageView::PictureRect() const {
    if (Image().isNull()) {
        return {};
    }
    const QSizeF size = QSizeF(image_->size()).scaled(QSizeF(this->size()), Qt::KeepAspectRatio);
    return QRectF((width() - size.width()) / 2, (height() - size.height()) / 2, size.width(),
                  size.height());
}

bool VideoImageView::IsCurrent(const QRect& visible, bool smooth) const {
    return !scaled_.pixmap.isNull() && scaled_.visible == visible && scaled_.widget == size() &&
           scaled_.ratio == devicePixelRatioF() && (scaled_.smooth || !smooth);
}

void VideoImageView::Scale(const QRect& visible, bool smooth) {
    const double ratio = devicePixelRatioF();
    const QRectF picture = PictureRect();
    const QRectF device(picture.topLeft() * ratio, picture.size() * ratio);
    const QRectF window(QPointF(visible.topLeft()) * ratio, QSizeF(visible.size()) * ratio);
    ScreenPicture part = ScaleForScreen(*image_, device.toRect(), window.toRect(), smooth);
    scaled_ = {QPixmap::fromImage(std::move(part.image), Qt::NoFormatConversion),
               visible,
               size(),
               ratio,
               smooth,
               part.opaque};
}

void VideoImageView::DrawPicture(QPainter& painter, const QRect& visible) {
    const bool smooth = !settle_->isActive();
    if (!IsCurrent(visible, smooth)) {
        Scale(visible, smooth);
    }
    if (!scaled_.opaque) {
        DrawCheckerboard(painter, PictureRect(), ColorsOf(palette()));
    }
    // The pixmap holds device pixels: it must land on them one to one.
    const double ratio = devicePixelRatioF();
    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    const QPointF corner = QRectF(QPointF(visible.topLeft()) * ratio, QSizeF()).toRect().topLeft();
    painter.drawPixmap(corner, scaled_.pixmap);
    painter.restore();
}

void VideoImageView::DrawWords(QPainter& painter, const QRect& visible) {
    const ThemeColors& colors = ColorsOf(palette());
    const int flags = Qt::AlignCenter | Qt::TextWrapAnywhere;
    const QRectF room = QRectF(visible).adjusted(24, 24, -24, -24);
    QRectF text = painter.boundingRect(room, flags, problem_);
    if (!Image().isNull()) {
        text.moveBottom(visible.bottom() - 24);
    }
    Shapes::Box(painter, text.adjusted(-12, -8, 12, 8), colors.surface, colors.border);
    painter.setPen(problem_.isEmpty() ? colors.text : colors.warning);
    painter.drawText(text, flags, problem_);
}

void VideoImageView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // The view may be ten times its panel: only what the panel shows is worth any work.
    const QRect visible = visibleRegion().boundingRect();
    if (visible.isEmpty()) {
        return;
    }
    if (!Image().isNull()) {
        DrawPicture(painter, visible);
    }
    if (!problem_.isEmpty()) {
        DrawWords(painter, visible);
    }
    if (highlighted_) {
        const ThemeColors& colors = ColorsOf(palette());
        QColor veil = colors.accent;
        veil.setAlphaF(0.12F);
        painter.fillRect(visible, veil);
        Shapes::FocusRing(painter, QRectF(visible).adjusted(2, 2, -2, -2), colors);
    }
}

void VideoImageView::DraggingEntered(const QMimeData& files) {
    highlighted_ = isEnabled() && !LocalPaths(files).isEmpty();
    update();
}

void VideoImageView::DraggingEnded() {
    highlighted_ = false;
    update();
}

bool VideoImageView::PerformDragOperation(const QMimeData& files) {
    DraggingEnded();
    const QStringList paths = LocalPaths(files);
    const FileDrop drop = paths.isEmpty() || !judge_ ? FileDrop() : judge_(paths);
    if (!drop.videoPath.isEmpty()) {
        const bool nothingLoaded = HasPictureObject() && Image().isNull();
        if (!nothingLoaded && askForVideo_ && !askForVideo_()) {
            return false;
        }
        Q_EMIT VideoDragPerformed(drop.videoPath);
        return true;
    }
    if (!drop.imagePaths.isEmpty()) {
        Q_EMIT ImageDragPerformed(drop.imagePaths);
        return true;
    }
    if (!drop.reason.isEmpty()) {
        SetProblem(drop.reason);
    }
    return false;
}

void VideoImageView::dragEnterEvent(QDragEnterEvent* event) {
    if (event->source() != nullptr) {
        event->ignore();  // what this program gives to others is no source of its own
        return;
    }
    DraggingEntered(*event->mimeData());
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void VideoImageView::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void VideoImageView::dragLeaveEvent(QDragLeaveEvent*) {
    DraggingEnded();
}

void VideoImageView::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(PerformDragOperation(*event->mimeData()));
}

}  // namespace lumirra
