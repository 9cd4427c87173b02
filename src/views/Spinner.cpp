#include "views/Spinner.h"

#include <QPainter>
#include <QTimer>

#include "views/style/Colours.h"

namespace lumirra {

Spinner::Spinner(QWidget* parent) : QWidget(parent), timer_(new QTimer(this)) {
    QSizePolicy policy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    timer_->setInterval(40);
    connect(timer_, &QTimer::timeout, this, [this] {
        angle_ = (angle_ + 14) % 360;
        update();
    });
}

void Spinner::Start() {
    running_ = true;
    if (isVisible()) {
        timer_->start();
    }
}

void Spinner::Stop() {
    running_ = false;
    timer_->stop();
    update();
}

void Spinner::showEvent(QShowEvent*) {
    if (running_) {
        timer_->start();
    }
}

void Spinner::hideEvent(QHideEvent*) {
    timer_->stop();
}

void Spinner::paintEvent(QPaintEvent*) {
    const ThemeColours& colours = ColoursOf(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min(width(), height()) - 5.0;
    const QRectF ring((width() - side) / 2, (height() - side) / 2, side, side);
    painter.setPen(QPen(colours.border, 2.5));
    painter.drawEllipse(ring);
    if (running_) {
        painter.setPen(QPen(colours.accent, 2.5, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(ring, -angle_ * 16, 100 * 16);
    }
}

}  // namespace lumirra
