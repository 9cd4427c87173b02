#include "views/PlayerView.h"

#include <QPainter>
#include <QVideoSink>

#include "views/player/FramePixels.h"

namespace lumirra {

PlayerView::PlayerView(QWidget* parent) : QWidget(parent) {}

PlayerView::~PlayerView() = default;

QVideoSink* PlayerView::Sink() {
    if (sink_ == nullptr) {
        sink_ = new QVideoSink(this);
        connect(sink_, &QVideoSink::videoFrameChanged, this, &PlayerView::TakeFrame);
    }
    return sink_;
}

void PlayerView::SetShownSize(const QSize& size) {
    shownSize_ = size;
    update();
}

void PlayerView::Clear() {
    frame_ = {};
    fresh_ = false;
    drawn_ = 0;
    buffer_ = {};
    update();
}

void PlayerView::TakeFrame(const QVideoFrame& frame) {
    if (frame.isValid()) {
        frame_ = frame;
        fresh_ = true;
        update();
    }
}

void PlayerView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!frame_.isValid()) {
        return;
    }
    const QSize upright = UprightSize(frame_);
    const QSizeF shown = shownSize_.isEmpty() ? QSizeF(upright) : QSizeF(shownSize_);
    const QSizeF fit = shown.scaled(QSizeF(size()), Qt::KeepAspectRatio);
    const QRectF place((width() - fit.width()) / 2, (height() - fit.height()) / 2, fit.width(),
                       fit.height());
    const QSize device = (fit * devicePixelRatioF()).toSize();
    // Shrinking is done while converting; growing is cheaper afterwards.
    const QSize wanted = device.boundedTo(upright);
    if (fresh_ || buffer_.size() != wanted) {
        if (!FrameToImage(frame_, wanted, buffer_)) {
            return;
        }
        drawn_ += fresh_ ? 1 : 0;
        fresh_ = false;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform, buffer_.size() != device);
    painter.drawImage(place, buffer_);
}

}  // namespace lumirra
