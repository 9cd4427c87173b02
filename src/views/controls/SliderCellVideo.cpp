#include "views/controls/SliderCellVideo.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {
namespace {

constexpr double kBarHeight = 5;
constexpr double kTickWidth = 4;
constexpr double kTickHeight = 20;
constexpr double kTickAbove = 7;  // from the bar's top up
constexpr double kFullyRight = 1;

}  // namespace

SliderCellVideo::SliderCellVideo(QWidget* parent) : RangeControl(parent) {
    setRange(0, 1);
    setSingleStep(0.001);
    setPageStep(0.05);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SliderCellVideo::SetStartMark(double fraction) {
    startMark_ = static_cast<float>(std::clamp(fraction, 0.0, 1.0));
    update();
}

void SliderCellVideo::SetEndMark(double fraction) {
    endMark_ = static_cast<float>(std::clamp(fraction, 0.0, 1.0));
    update();
}

QRectF SliderCellVideo::BarRect() const {
    return QRectF(0, (height() - kBarHeight) / 2, width(), kBarHeight);
}

QRectF SliderCellVideo::KnobRectAt(double fraction) const {
    const QRectF bar = BarRect();
    const double side = Shapes::kKnobDiameter;
    return QRectF(bar.x() + fraction * std::max(bar.width() - side, 0.0),
                  bar.center().y() - side / 2, side, side);
}

double SliderCellVideo::startPoint() const {
    return KnobRectAt(double(startMark_)).left() - BarRect().left();
}

double SliderCellVideo::endPoint() const {
    return BarRect().right() - KnobRectAt(double(endMark_)).right() + kFullyRight;
}

QRectF SliderCellVideo::StartTickRect() const {
    const QRectF bar = BarRect();
    const double centre = bar.x() + startPoint() + Shapes::kKnobDiameter / 2;
    return QRectF(centre - kTickWidth / 2, bar.y() - kTickAbove, kTickWidth, kTickHeight);
}

QRectF SliderCellVideo::EndTickRect() const {
    const QRectF bar = BarRect();
    const double centre = bar.right() - endPoint() - Shapes::kKnobDiameter / 2 + kFullyRight;
    return QRectF(centre - kTickWidth / 2, bar.y() - kTickAbove, kTickWidth, kTickHeight);
}

QRectF SliderCellVideo::FilledRect() const {
    const QRectF bar = BarRect();
    return QRectF(bar.x(), bar.y(), KnobRect().center().x() - bar.x(), bar.height());
}

double SliderCellVideo::FractionAt(double x) const {
    const double travel = BarRect().width() - Shapes::kKnobDiameter;
    return travel > 0 ? std::clamp((x - BarRect().x()) / travel, 0.0, 1.0) : 0;
}

void SliderCellVideo::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const double x = event->position().x();
    const QRectF knob = KnobRect();
    dragged_ = true;
    if (x >= knob.left() && x <= knob.right()) {
        grabOffset_ = x - knob.left();  // touching the knob must not move it
    } else {
        grabOffset_ = Shapes::kKnobDiameter / 2;
        EditValue(minimum() + FractionAt(x - grabOffset_) * (maximum() - minimum()));
    }
    update();
}

void SliderCellVideo::mouseMoveEvent(QMouseEvent* event) {
    const double x = event->position().x();
    hovered_ = true;
    if (dragged_) {
        EditValue(minimum() + FractionAt(x - grabOffset_) * (maximum() - minimum()));
    }
    Q_EMIT Hovered(dragged_ ? Fraction() : FractionAt(x - Shapes::kKnobDiameter / 2),
                   event->globalPosition().toPoint());
    update();
}

void SliderCellVideo::mouseReleaseEvent(QMouseEvent*) {
    if (dragged_) {
        dragged_ = false;
        update();
        Q_EMIT DragFinished();
    }
}

void SliderCellVideo::leaveEvent(QEvent*) {
    hovered_ = false;
    update();
    Q_EMIT Left();
}

void SliderCellVideo::DrawBar(QPainter& painter) const {
    const ThemeColors& colors = ColorsOf(palette());
    const double radius = kBarHeight / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled() ? colors.track : colors.trackDisabled);
    painter.drawRoundedRect(BarRect(), radius, radius);
    if (!isEnabled()) {
        return;
    }
    painter.setBrush(colors.trackFilled);
    painter.drawRoundedRect(FilledRect(), radius, radius);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(StartTickRect(), colors.startTick);
    painter.fillRect(EndTickRect(), colors.endTick);
}

void SliderCellVideo::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    DrawBar(painter);
    Shapes::Knob(painter, KnobRect(), ColorsOf(palette()), isEnabled(), hasFocus(),
                 dragged_ || hovered_);
}

}  // namespace lumirra
