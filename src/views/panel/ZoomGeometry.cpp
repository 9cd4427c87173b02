#include "views/panel/ZoomGeometry.h"

#include <algorithm>

namespace lumirra {
namespace {

constexpr double kLargest = 10;

/// Origins that keep the panel covered lie between panel - view and 0.
double Covering(double origin, double panel, double view) {
    return std::min(std::max(origin, panel - view), 0.0);
}

bool Covers(double origin, double panel, double view) {
    return panel - view <= origin && origin <= 0;
}

}  // namespace

void ZoomGeometry::ZoomBy(double factor) {
    if (panel_.isEmpty()) {
        return;
    }
    const double zoom = view_.width() / panel_.width() * factor;
    QSizeF size = view_.size() * factor;
    if (zoom < 1) {
        size = panel_;
    } else if (zoom > kLargest) {
        size = panel_ * kLargest;
    }
    const QPointF centre = view_.center();
    view_ = QRectF(centre.x() - size.width() / 2, centre.y() - size.height() / 2, size.width(),
                   size.height());
    Clamp();
}

void ZoomGeometry::Reset() {
    view_ = QRectF(QPointF(0, 0), panel_);
}

void ZoomGeometry::Clamp() {
    view_.moveTo(Covering(view_.x(), panel_.width(), view_.width()),
                 Covering(view_.y(), panel_.height(), view_.height()));
}

void ZoomGeometry::Pan(double dx, double dy) {
    const double x = view_.x() + dx;
    const double y = view_.y() + dy;
    if (Covers(x, panel_.width(), view_.width())) {
        view_.moveLeft(x);
    }
    if (Covers(y, panel_.height(), view_.height())) {
        view_.moveTop(y);
    }
}

void ZoomGeometry::SetPanel(const QSizeF& panel) {
    if (panel_.isEmpty() || panel.isEmpty()) {
        panel_ = panel;
        Reset();
        return;
    }
    const double zoom = view_.width() / panel_.width();
    const double middleX = (panel_.width() / 2 - view_.x()) / view_.width();
    const double middleY = (panel_.height() / 2 - view_.y()) / view_.height();
    panel_ = panel;
    const QSizeF size = panel_ * zoom;
    view_ = QRectF(panel_.width() / 2 - middleX * size.width(),
                   panel_.height() / 2 - middleY * size.height(), size.width(), size.height());
    Clamp();
}

}  // namespace lumirra
