#pragma once

#include <QRectF>
#include <QSizeF>

namespace lumirra {

/// Where the picture view lies inside its panel: as large as the panel or larger, up to ten times,
/// and always covering it. Top-left coordinates of the panel.
class ZoomGeometry {
  public:
    ZoomGeometry() = default;
    explicit ZoomGeometry(const QSizeF& panel) : panel_(panel), view_(QPointF(0, 0), panel) {}

    QRectF View() const { return view_; }
    QSizeF Panel() const { return panel_; }
    bool IsZoomed() const { return view_.width() > panel_.width(); }

    void ZoomIn() { ZoomBy(1.1); }
    void ZoomOut() { ZoomBy(0.9); }
    void Reset();

    /// Moves the view; an axis on which that would uncover part of the panel stays as it is.
    /// `dx` to the right, `dy` downwards.
    void Pan(double dx, double dy);

    /// Another panel size at the same zoom about the same middle.
    void SetPanel(const QSizeF& panel);

  private:
    void ZoomBy(double factor);
    void Clamp();

    QSizeF panel_;
    QRectF view_;
};

}  // namespace lumirra
