#pragma once

#include <QWidget>

namespace lumirra {

/// What a slider and a stepper share: a single-precision value in a range, keys, the wheel (only
/// while it has the keyboard) and the word to assistive technology. `valueChanged` follows every
/// change; `ValueEdited` only one made by a person, so code that sets a value needs no blocker.
class RangeControl : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double minimum READ minimum WRITE setMinimum)
    Q_PROPERTY(double maximum READ maximum WRITE setMaximum)
    Q_PROPERTY(double singleStep READ singleStep WRITE setSingleStep)
    Q_PROPERTY(double pageStep READ pageStep WRITE setPageStep)
    Q_PROPERTY(float value READ value WRITE setValue NOTIFY valueChanged USER true)

  public:
    float value() const { return value_; }
    double minimum() const { return minimum_; }
    double maximum() const { return maximum_; }
    double singleStep() const { return singleStep_; }
    double pageStep() const { return pageStep_; }

    /// Clamped to the range; a value that is not a number is ignored.
    void setValue(double value);
    /// A maximum below the minimum moves with it, and the reverse; the value is clamped.
    void setRange(double minimum, double maximum);
    void setMinimum(double minimum) { setRange(minimum, std::max(minimum, maximum_)); }
    void setMaximum(double maximum) { setRange(std::min(minimum_, maximum), maximum); }
    void setSingleStep(double step) { singleStep_ = step; }
    void setPageStep(double step) { pageStep_ = step; }

    /// 0 at the minimum, 1 at the maximum; 0 for an empty range.
    double Fraction() const;

    /// As `setValue`, but as if a person had done it. No change, no signal.
    void EditValue(double value);

  Q_SIGNALS:
    void valueChanged(float value);
    void ValueEdited(float value);

  protected:
    explicit RangeControl(QWidget* parent);

    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

    /// After a change of value or range, before the signals.
    virtual void ShowValue() { update(); }

  private:
    bool Assign(double value);

    double minimum_ = 0;
    double maximum_ = 1;
    double singleStep_ = 0.01;
    double pageStep_ = 0.1;
    float value_ = 0;
    int wheelRest_ = 0;
};

/// Tells assistive technology how to read and set `RangeControl`s. Once, before the first window.
void InstallAccessibleRangeControls();

}  // namespace lumirra
