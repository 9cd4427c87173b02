#include "views/controls/Spinner.h"

#include <QPainter>
#include <QTimer>

#include "views/style/Colors.h"

namespace lumirra {
namespace {

constexpr int kDegreesPerTurn = 14;
/// What is done within this many turns needs no sign of work; one that flashes is a nuisance.
constexpr int kTurnsUnseen = 4;

}  // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent), timer_(new QTimer(this)) {
    QSizePolicy policy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    timer_->setInterval(40);
    connect(timer_, &QTimer::timeout, this, [this] {
        ++turns_;
        update();
    });
}

void Spinner::Start() {
    if (!running_) {
        running_ = true;
        turns_ = 0;
        show();
    }
}

void Spinner::Stop() {
    running_ = false;
    hide();
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
    if (turns_ < kTurnsUnseen) {
        return;
    }
    const ThemeColors& colors = ColorsOf(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min(width(), height()) - 5.0;
    const QRectF ring((width() - side) / 2, (height() - side) / 2, side, side);
    painter.setPen(QPen(colors.border, 2.5));
    painter.drawEllipse(ring);
    painter.setPen(QPen(colors.accent, 2.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, -(turns_ * kDegreesPerTurn % 360) * 16, 100 * 16);
}

}  // namespace lumirra
