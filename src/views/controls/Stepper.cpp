#include "views/controls/Stepper.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {
namespace {

constexpr int kFirstRepeatMs = 350;
constexpr int kRepeatMs = 60;

}  // namespace

Stepper::Stepper(QWidget* parent) : RangeControl(parent), repeat_(new QTimer(this)) {
    setSingleStep(1);
    setPageStep(10);
    setRange(0, 100);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(repeat_, &QTimer::timeout, this, &Stepper::Repeat);
}

QSize Stepper::sizeHint() const {
    return QSize(20, Shapes::kControlHeight);
}

int Stepper::HalfAt(const QPoint& point) const {
    if (!rect().contains(point)) {
        return 0;
    }
    return point.y() * 2 < height() ? 1 : -1;
}

void Stepper::Repeat() {
    repeat_->setInterval(kRepeatMs);
    if (pressed_ == 0 || !isEnabled()) {
        repeat_->stop();
        return;
    }
    EditValue(double(value()) + pressed_ * singleStep());
}

void Stepper::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    pressed_ = HalfAt(event->position().toPoint());
    update();
    EditValue(double(value()) + pressed_ * singleStep());
    repeat_->start(kFirstRepeatMs);
}

void Stepper::mouseReleaseEvent(QMouseEvent*) {
    pressed_ = 0;
    repeat_->stop();
    update();
}

void Stepper::mouseMoveEvent(QMouseEvent* event) {
    const int half = HalfAt(event->position().toPoint());
    if (half != hovered_) {
        hovered_ = half;
        update();
    }
}

void Stepper::leaveEvent(QEvent*) {
    hovered_ = 0;
    update();
}

void Stepper::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ThemeColors& colors = ColorsOf(palette());
    const QRectF box = rect();
    Shapes::Box(painter, box, isEnabled() ? colors.button : colors.window, colors.border, 5);
    const double middle = box.center().y();
    for (const int half : {1, -1}) {
        const QRectF part(1, half > 0 ? 1 : middle, box.width() - 2, middle - 1);
        if (isEnabled() && (pressed_ == half || hovered_ == half)) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(pressed_ == half ? colors.buttonPressed : colors.buttonHover);
            painter.drawRoundedRect(part, 4, 4);
        }
        const bool atLimit = half > 0 ? double(value()) >= maximum() : double(value()) <= minimum();
        Shapes::Arrow(painter, part, isEnabled() && !atLimit ? colors.textDim : colors.textDisabled,
                      half > 0);
    }
    if (hasFocus()) {
        Shapes::FocusRing(painter, box, colors, 5);
    }
}

}  // namespace lumirra
