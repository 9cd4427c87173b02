#include "views/controls/RangeControl.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "views/controls/Stepper.h"

namespace lumirra {
namespace {

/// Value, range and step of a `RangeControl`; setting it counts as a person's edit.
class AccessibleRange : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit AccessibleRange(RangeControl* control)
        : QAccessibleWidget(control, qobject_cast<Stepper*>(control) != nullptr
                                         ? QAccessible::SpinBox
                                         : QAccessible::Slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) {
            return static_cast<QAccessibleValueInterface*>(this);
        }
        return QAccessibleWidget::interface_cast(type);
    }
    QVariant currentValue() const override { return double(Control()->value()); }
    void setCurrentValue(const QVariant& value) override { Control()->EditValue(value.toDouble()); }
    QVariant maximumValue() const override { return Control()->maximum(); }
    QVariant minimumValue() const override { return Control()->minimum(); }
    QVariant minimumStepSize() const override { return Control()->singleStep(); }
    QString text(QAccessible::Text which) const override {
        return which == QAccessible::Value ? QString::number(double(Control()->value()))
                                           : QAccessibleWidget::text(which);
    }

  private:
    RangeControl* Control() const { return static_cast<RangeControl*>(widget()); }
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
    auto* control = qobject_cast<RangeControl*>(object);
    return control != nullptr ? new AccessibleRange(control) : nullptr;
}

}  // namespace

void InstallAccessibleRangeControls() {
    QAccessible::installFactory(MakeAccessible);
}

RangeControl::RangeControl(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
}

void RangeControl::setValue(double value) {
    if (Assign(value)) {
        Q_EMIT valueChanged(value_);
    }
}

void RangeControl::EditValue(double value) {
    if (isEnabled() && Assign(value)) {
        Q_EMIT valueChanged(value_);
        Q_EMIT ValueEdited(value_);
    }
}

bool RangeControl::Assign(double value) {
    if (std::isnan(value)) {
        return false;
    }
    const auto clamped = static_cast<float>(std::clamp(value, minimum_, maximum_));
    if (clamped == value_) {
        return false;
    }
    value_ = clamped;
    ShowValue();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, double(value_));
        QAccessible::updateAccessibility(&event);
    }
    return true;
}

void RangeControl::setRange(double minimum, double maximum) {
    minimum_ = minimum;
    maximum_ = std::max(minimum, maximum);
    ShowValue();
    setValue(double(value_));
}

double RangeControl::Fraction() const {
    const double span = maximum_ - minimum_;
    return span > 0 ? std::clamp((double(value_) - minimum_) / span, 0.0, 1.0) : 0;
}

void RangeControl::keyPressEvent(QKeyEvent* event) {
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const double value = double(value_);
    switch (event->key()) {
        case Qt::Key_Up:
            EditValue(value + singleStep_);
            break;
        case Qt::Key_Down:
            EditValue(value - singleStep_);
            break;
        case Qt::Key_Right:
            EditValue(value + (mirrored ? -singleStep_ : singleStep_));
            break;
        case Qt::Key_Left:
            EditValue(value - (mirrored ? -singleStep_ : singleStep_));
            break;
        case Qt::Key_PageUp:
            EditValue(value + pageStep_);
            break;
        case Qt::Key_PageDown:
            EditValue(value - pageStep_);
            break;
        case Qt::Key_Home:
            EditValue(minimum_);
            break;
        case Qt::Key_End:
            EditValue(maximum_);
            break;
        default:
            event->ignore();
    }
}

void RangeControl::wheelEvent(QWheelEvent* event) {
    if (!hasFocus()) {
        event->ignore();  // a wheel turned over a page of controls scrolls the page
        return;
    }
    wheelRest_ += event->angleDelta().y();
    const int clicks = wheelRest_ / QWheelEvent::DefaultDeltasPerStep;
    wheelRest_ -= clicks * QWheelEvent::DefaultDeltasPerStep;
    EditValue(double(value_) + clicks * singleStep_);
    event->accept();
}

void RangeControl::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange || event->type() == QEvent::PaletteChange) {
        update();
    }
    QWidget::changeEvent(event);
}

}  // namespace lumirra
