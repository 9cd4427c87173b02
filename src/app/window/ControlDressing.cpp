#include "app/window/ControlDressing.h"

#include <QDoubleSpinBox>
#include <QHash>
#include <cmath>

#include "views/controls/PopUp.h"
#include "views/controls/Stepper.h"
#include "views/controls/ValueSlider.h"

namespace lumirra {
namespace {

constexpr double kStepsPerPage = 10;

int DecimalsOf(double step) {
    int decimals = 0;
    while (decimals < 6 && std::abs(step - std::round(step)) > 1e-9) {
        step *= 10;
        ++decimals;
    }
    return decimals;
}

/// Units that fit behind the number of a slider; the others stand in the tooltip.
QString SuffixOf(const ControlRow& row) {
    const QLatin1String unit(row.unit);
    if (unit == QLatin1String("degrees")) {
        return QStringLiteral("°");
    }
    return unit == QLatin1String("px") ? QStringLiteral(" px") : QString();
}

QString TooltipOf(const ControlRow& row) {
    QString text = QObject::tr(row.tooltip);
    const QLatin1String unit(row.unit);
    if (unit.isEmpty()) {
        return text;
    }
    return QStringLiteral("%1 (%2)").arg(text, QObject::tr(row.unit));
}

void DressRange(RangeControl& control, const ControlRow& row) {
    control.setRange(row.minimum, row.maximum);
    control.setSingleStep(row.step);
    control.setPageStep(row.step * kStepsPerPage);
}

void Dress(QWidget& widget, const ControlRow& row) {
    widget.setAccessibleName(QObject::tr(row.label));
    widget.setAccessibleDescription(row.name);
    widget.setToolTip(TooltipOf(row));
    if (auto* slider = qobject_cast<ValueSlider*>(&widget)) {
        DressRange(*slider, row);
        slider->setResetValue(row.initial);
        slider->setDecimals(DecimalsOf(row.step));
        slider->setSuffix(SuffixOf(row));
    } else if (auto* stepper = qobject_cast<Stepper*>(&widget)) {
        DressRange(*stepper, row);
    } else if (auto* number = qobject_cast<QDoubleSpinBox*>(&widget)) {
        number->setDecimals(DecimalsOf(row.minimum));
        number->setRange(row.minimum, row.maximum);
        number->setSingleStep(row.step);
    } else if (auto* popUp = qobject_cast<PopUp*>(&widget)) {
        popUp->clear();
        popUp->addItems(PopUpItems(row.control));
    }
}

}  // namespace

SettingWidgets FindSettingWidgets(const QWidget& window) {
    QHash<QString, QWidget*> byName;
    const QList<QWidget*> all = window.findChildren<QWidget*>();
    for (QWidget* widget : all) {
        byName.insert(widget->objectName(), widget);
    }
    SettingWidgets found{};
    for (const ControlRow& row : ControlTable()) {
        QWidget* const widget = byName.value(row.name);
        if (widget == nullptr) {
            qFatal("the interface file has no %s", row.name.data());
        }
        found[static_cast<std::size_t>(row.control)] = widget;
    }
    return found;
}

void DressControls(const SettingWidgets& widgets) {
    for (const ControlRow& row : ControlTable()) {
        Dress(*widgets[static_cast<std::size_t>(row.control)], row);
    }
}

}  // namespace lumirra
