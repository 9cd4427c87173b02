#pragma once

#include "views/controls/RangeControl.h"

namespace lumirra {

/// The position slider: 0 the start of the video, 1 its end, with two ticks for the Start and End
/// markers. A tick stands exactly where the knob's centre stood when the marker was set, also
/// after the slider has been resized.
class SliderCellVideo : public RangeControl {
    Q_OBJECT

  public:
    explicit SliderCellVideo(QWidget* parent = nullptr);

    /// Markers as fractions of the video. The two points below follow from them.
    float StartMark() const { return startMark_; }
    float EndMark() const { return endMark_; }
    void SetStartMark(double fraction);
    void SetEndMark(double fraction);

    /// The knob's left edge at the Start marker, from the bar's left end: 0 at fraction 0.
    double startPoint() const;
    /// From the bar's right end to the knob's right edge at the End marker, plus 1: 1 at
    /// fraction 1.
    double endPoint() const;

    QRectF BarRect() const;
    QRectF KnobRect() const { return KnobRectAt(Fraction()); }
    QRectF KnobRectAt(double fraction) const;
    QRectF StartTickRect() const;
    QRectF EndTickRect() const;
    QRectF FilledRect() const;

    bool IsDragged() const { return dragged_; }

    QSize sizeHint() const override { return QSize(240, 28); }
    QSize minimumSizeHint() const override { return QSize(120, 28); }

  Q_SIGNALS:
    /// The knob was let go: the value is final for now.
    void DragFinished();
    /// The pointer is over the bar at this position; the receiver shows its time. `Left` when it
    /// went away.
    void Hovered(double fraction, const QPoint& globalPosition);
    void Left();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    double FractionAt(double x) const;
    void DrawBar(QPainter& painter) const;

    float startMark_ = 0;
    float endMark_ = 1;
    double grabOffset_ = 0;
    bool dragged_ = false;
    bool hovered_ = false;
};

}  // namespace lumirra
