#include "views/controls/ValueSlider.h"

#include <QDoubleSpinBox>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {
namespace {

constexpr int kGap = 10;
constexpr int kShortestBar = 60;
constexpr double kBarHeight = 4;

/// The typed number. The wheel belongs to the page unless someone is typing here.
class NumberField : public QDoubleSpinBox {
  public:
    explicit NumberField(QWidget* parent) : QDoubleSpinBox(parent) {
        setButtonSymbols(QAbstractSpinBox::NoButtons);
        setKeyboardTracking(false);
        setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        setFocusPolicy(Qt::StrongFocus);
        setCorrectionMode(QAbstractSpinBox::CorrectToNearestValue);
    }

  protected:
    void wheelEvent(QWheelEvent* event) override {
        if (hasFocus()) {
            QDoubleSpinBox::wheelEvent(event);
        } else {
            event->ignore();
        }
    }
};

}  // namespace

ValueSlider::ValueSlider(QWidget* parent) : RangeControl(parent), field_(new NumberField(this)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(field_, &QDoubleSpinBox::valueChanged, this, &ValueSlider::EditValue);
    ValueSlider::ShowValue();
}

int ValueSlider::decimals() const {
    return field_->decimals();
}

QString ValueSlider::suffix() const {
    return field_->suffix();
}

void ValueSlider::setDecimals(int decimals) {
    const QSignalBlocker blocker(field_);
    field_->setDecimals(decimals);
    ShowValue();
    PlaceField();
}

void ValueSlider::setSuffix(const QString& suffix) {
    const QSignalBlocker blocker(field_);
    field_->setSuffix(suffix);
    PlaceField();
}

void ValueSlider::ShowValue() {
    const QSignalBlocker blocker(field_);
    field_->setRange(minimum(), maximum());
    field_->setSingleStep(singleStep());
    field_->setValue(double(value()));
    update();
}

int ValueSlider::FieldWidth() const {
    const QFontMetrics metrics(field_->font());
    int widest = 0;
    for (const double bound : {minimum(), maximum()}) {
        const QString text = QString::number(bound, 'f', decimals()) + suffix();
        widest = std::max(widest, metrics.horizontalAdvance(text));
    }
    return std::max(64, widest + 18);
}

QRectF ValueSlider::BarRect() const {
    const double right = width() - FieldWidth() - kGap;
    return QRectF(0, (height() - kBarHeight) / 2.0, std::max(right, 1.0), kBarHeight);
}

QRectF ValueSlider::KnobRect() const {
    const QRectF bar = BarRect();
    const double x = bar.x() + Fraction() * (bar.width() - Shapes::kKnobDiameter);
    return QRectF(x, bar.center().y() - Shapes::kKnobDiameter / 2, Shapes::kKnobDiameter,
                  Shapes::kKnobDiameter);
}

QSize ValueSlider::sizeHint() const {
    return QSize(kShortestBar * 2 + kGap + FieldWidth(),
                 std::max(fontMetrics().height() + 10, Shapes::kControlHeight));
}

QSize ValueSlider::minimumSizeHint() const {
    return QSize(kShortestBar + kGap + FieldWidth(), sizeHint().height());
}

void ValueSlider::PlaceField() {
    const int wide = FieldWidth();
    field_->setGeometry(width() - wide, 0, wide, height());
    updateGeometry();
}

void ValueSlider::resizeEvent(QResizeEvent*) {
    PlaceField();
}

void ValueSlider::showEvent(QShowEvent*) {
    // Named after it was made, by whoever made it.
    field_->setAccessibleName(accessibleName());
    field_->setAccessibleDescription(objectName() + QLatin1String(".field"));
    field_->setToolTip(toolTip());
}

void ValueSlider::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        PlaceField();
    }
    RangeControl::changeEvent(event);
}

void ValueSlider::DragTo(double x) {
    const QRectF bar = BarRect();
    const double travel = bar.width() - Shapes::kKnobDiameter;
    if (travel <= 0) {
        return;
    }
    const double fraction = std::clamp((x - grabOffset_ - bar.x()) / travel, 0.0, 1.0);
    double wanted = minimum() + fraction * (maximum() - minimum());
    if (singleStep() > 0) {
        wanted = std::round(wanted / singleStep()) * singleStep();
    }
    EditValue(wanted);
}

void ValueSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || event->position().x() > BarRect().right() + 2) {
        return;
    }
    const double x = event->position().x();
    const QRectF knob = KnobRect();
    dragged_ = true;
    if (x >= knob.left() && x <= knob.right()) {
        grabOffset_ = x - knob.left();  // touching the knob must not move it
    } else {
        grabOffset_ = Shapes::kKnobDiameter / 2;
        DragTo(x);
    }
    update();
}

void ValueSlider::mouseMoveEvent(QMouseEvent* event) {
    if (dragged_) {
        DragTo(event->position().x());
    }
}

void ValueSlider::mouseReleaseEvent(QMouseEvent*) {
    if (dragged_) {
        dragged_ = false;
        update();
        Q_EMIT DragFinished();
    }
}

void ValueSlider::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        EditValue(resetValue_);
    }
}

void ValueSlider::enterEvent(QEnterEvent*) {
    update();
}

void ValueSlider::leaveEvent(QEvent*) {
    update();
}

void ValueSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ThemeColors& colors = ColorsOf(palette());
    const QRectF bar = BarRect();
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled() ? colors.track : colors.trackDisabled);
    painter.drawRoundedRect(bar, kBarHeight / 2, kBarHeight / 2);
    Shapes::Knob(painter, KnobRect(), colors, isEnabled(), hasFocus(), dragged_ || underMouse());
}

}  // namespace lumirra
