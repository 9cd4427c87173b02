#include "views/controls/ShortNumberField.h"

namespace lumirra {

QString ShortNumberField::textFromValue(double value) const {
    QString text = QDoubleSpinBox::textFromValue(value);
    const QString point = locale().decimalPoint();
    if (text.contains(point)) {
        while (text.endsWith(locale().zeroDigit())) {
            text.chop(1);
        }
        if (text.endsWith(point)) {
            text.chop(point.size());
        }
    }
    return text;
}

}  // namespace lumirra
