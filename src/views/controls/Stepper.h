#pragma once

#include "views/controls/RangeControl.h"

class QTimer;

namespace lumirra {

/// The two arrows beside a number field, looking like one field with it. Holding a button or a key
/// repeats. Unlike a spin box it holds no text: the field beside it is a widget of its own.
class Stepper : public RangeControl {
    Q_OBJECT

  public:
    explicit Stepper(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    int HalfAt(const QPoint& point) const;
    void Repeat();

    QTimer* repeat_;
    int pressed_ = 0;  ///< 1 the upper half, -1 the lower, 0 none
    int hovered_ = 0;
};

}  // namespace lumirra
