#include "views/panel/PlayerView.h"

#include <QPainter>

#include "views/panel/Film.h"

namespace lumirra {

PlayerView::PlayerView(QWidget* parent) : QWidget(parent) {}

void PlayerView::SetFilm(const Film* film) {
    film_ = film;
    fresh_ = false;
    drawn_ = 0;
    buffer_ = {};
    update();
}

void PlayerView::TakePicture() {
    fresh_ = true;
    update();
}

void PlayerView::paintEvent(QPaintEvent*) {
    const QSize upright = film_ != nullptr ? film_->PictureSize() : QSize();
    if (upright.isEmpty()) {
        return;
    }
    const QSizeF fit = QSizeF(upright).scaled(QSizeF(size()), Qt::KeepAspectRatio);
    const QRectF place((width() - fit.width()) / 2, (height() - fit.height()) / 2, fit.width(),
                       fit.height());
    const QSize device = (fit * devicePixelRatioF()).toSize();
    // Shrinking is done while converting; growing is cheaper afterwards.
    const QSize wanted = device.boundedTo(upright);
    if (fresh_ || buffer_.size() != wanted) {
        if (!film_->Draw(wanted, buffer_)) {
            return;
        }
        drawn_ += fresh_ ? 1 : 0;
        fresh_ = false;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, buffer_.size() != device);
    painter.drawImage(place, buffer_);
}

}  // namespace lumirra
