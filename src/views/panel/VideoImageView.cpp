#include "views/panel/VideoImageView.h"

#include <QDragEnterEvent>
#include <QImageReader>
#include <QPainter>
#include <QTimer>

#include "views/Checkerboard.h"
#include "views/ScreenPicture.h"
#include "views/panel/EmptyState.h"
#include "views/panel/FileDrop.h"
#include "views/style/Colours.h"
#include "views/style/Shapes.h"

namespace lumirra {
namespace {

/// Longer than the gap between two pictures of a drag, shorter than anyone waits.
constexpr int kSettleMs = 70;

bool ReadableByToolkit(const QString& path) {
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    return reader.canRead();
}

}  // namespace

VideoImageView::VideoImageView(QWidget* parent)
    : QWidget(parent),
      acceptedVideoTypes{QStringLiteral("mov"), QStringLiteral("m4v"), QStringLiteral("mp4"),
                         QStringLiteral("3gp"), QStringLiteral("3g2")},
      acceptedImageTypes{QStringLiteral("jpg"),  QStringLiteral("jpeg"), QStringLiteral("jpe"),
                         QStringLiteral("jp2"),  QStringLiteral("jpx"),  QStringLiteral("png"),
                         QStringLiteral("tiff"), QStringLiteral("tif"),  QStringLiteral("gif"),
                         QStringLiteral("bmp")},
      settle_(new QTimer(this)),
      loads_(ReadableByToolkit) {
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

void VideoImageView::SetBusyText(const QString& text) {
    if (text != busyText_) {
        busyText_ = text;
        update();
        Q_EMIT StateChanged();
    }
}

bool VideoImageView::IsEmptyState() const {
    return Image().isNull() && problem_.isEmpty() && busyText_.isEmpty();
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
        DrawCheckerboard(painter, PictureRect(), ColoursOf(palette()));
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
    const ThemeColours& colours = ColoursOf(palette());
    const QString words = problem_.isEmpty() ? busyText_ : problem_;
    const int flags = Qt::AlignCenter | Qt::TextWrapAnywhere;
    const QRectF room = QRectF(visible).adjusted(24, 24, -24, -24);
    QRectF text = painter.boundingRect(room, flags, words);
    if (!Image().isNull()) {
        text.moveBottom(visible.bottom() - 24);
    }
    Shapes::Box(painter, text.adjusted(-12, -8, 12, 8), colours.surface, colours.border);
    painter.setPen(problem_.isEmpty() ? colours.text : colours.warning);
    painter.drawText(text, flags, words);
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
    if (!problem_.isEmpty() || (Image().isNull() && !busyText_.isEmpty())) {
        DrawWords(painter, visible);
    }
    if (highlighted_) {
        const ThemeColours& colours = ColoursOf(palette());
        QColor veil = colours.accent;
        veil.setAlphaF(0.12F);
        painter.fillRect(visible, veil);
        Shapes::FocusRing(painter, QRectF(visible).adjusted(2, 2, -2, -2), colours);
    }
}

void VideoImageView::DraggingEntered(const QMimeData& files) {
    const FileDrop drop = JudgeDrop(files, acceptedVideoTypes, acceptedImageTypes);
    highlighted_ = isEnabled() && drop.kind != FileDrop::Kind::Refused;
    update();
}

void VideoImageView::DraggingEnded() {
    highlighted_ = false;
    update();
}

bool VideoImageView::PerformDragOperation(const QMimeData& files) {
    DraggingEnded();
    const FileDrop drop = JudgeDrop(files, acceptedVideoTypes, acceptedImageTypes);
    switch (drop.kind) {
        case FileDrop::Kind::Video: {
            const bool nothingLoaded = HasPictureObject() && Image().isNull();
            if (!nothingLoaded && askForVideo_ && !askForVideo_()) {
                return false;
            }
            Q_EMIT VideoDragPerformed(drop.videoPath);
            return true;
        }
        case FileDrop::Kind::Images:
            if (drop.imagePaths.isEmpty() || !loads_(drop.imagePaths.first())) {
                return false;
            }
            Q_EMIT ImageDragPerformed(drop.imagePaths);
            return true;
        case FileDrop::Kind::Refused:
            break;
    }
    return false;
}

void VideoImageView::dragEnterEvent(QDragEnterEvent* event) {
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
