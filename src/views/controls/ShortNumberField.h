#pragma once

#include <QDoubleSpinBox>

namespace lumirra {

/// A field of numbers that shows no more decimals than a number needs.
class ShortNumberField : public QDoubleSpinBox {
    Q_OBJECT

  public:
    using QDoubleSpinBox::QDoubleSpinBox;

    QString textFromValue(double value) const override;
};

}  // namespace lumirra
