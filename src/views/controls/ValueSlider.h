#pragma once

#include "views/controls/RangeControl.h"

class QDoubleSpinBox;

namespace lumirra {

/// A slider with a number field at its right that shows the value and takes a typed one. The
/// slider itself has the keyboard first, then the field. Double click: back to `resetValue`.
/// Dragging snaps to multiples of `singleStep`; setting a value from code does not.
class ValueSlider : public RangeControl {
    Q_OBJECT
    Q_PROPERTY(double resetValue READ resetValue WRITE setResetValue)
    Q_PROPERTY(int decimals READ decimals WRITE setDecimals)
    Q_PROPERTY(QString suffix READ suffix WRITE setSuffix)

  public:
    explicit ValueSlider(QWidget* parent = nullptr);

    double resetValue() const { return resetValue_; }
    int decimals() const;
    QString suffix() const;
    void setResetValue(double value) { resetValue_ = value; }
    void setDecimals(int decimals);
    /// A unit after the number, with its own leading blank where one is wanted.
    void setSuffix(const QString& suffix);

    /// The knob is held.
    bool IsDragged() const { return dragged_; }
    /// Where the knob is drawn.
    QRectF KnobRect() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    /// The knob was let go: the value is final for now.
    void DragFinished();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void ShowValue() override;

  private:
    QRectF BarRect() const;
    int FieldWidth() const;
    void PlaceField();
    void DragTo(double x);

    QDoubleSpinBox* field_;
    double resetValue_ = 0;
    double grabOffset_ = 0;
    bool dragged_ = false;
};

}  // namespace lumirra
