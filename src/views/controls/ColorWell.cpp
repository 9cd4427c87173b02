#include "views/controls/ColorWell.h"

#include <QColorDialog>
#include <QPainter>

#include "views/Checkerboard.h"
#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {

ColorWell::ColorWell(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    chooser_ = [this](const QColor& current) -> std::optional<QColor> {
        const QColor chosen = QColorDialog::getColor(current, window(), tr("Choose a colour"),
                                                     QColorDialog::ShowAlphaChannel);
        return chosen.isValid() ? std::optional(chosen) : std::nullopt;
    };
    connect(this, &QAbstractButton::clicked, this, &ColorWell::Ask);
}

void ColorWell::setColor(const QColor& color) {
    if (color.isValid() && color != color_) {
        color_ = color;
        update();
        Q_EMIT colorChanged(color_);
    }
}

void ColorWell::Ask() {
    const std::optional<QColor> chosen = chooser_(color_);
    if (chosen && chosen->isValid() && *chosen != color_) {
        setColor(*chosen);
        Q_EMIT ColorEdited(color_);
    }
}

void ColorWell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ThemeColors& colors = ColorsOf(palette());
    Shapes::Box(painter, rect(), isEnabled() ? colors.button : colors.window,
                isEnabled() && underMouse() ? colors.accent : colors.border);
    if (hasFocus()) {
        Shapes::FocusRing(painter, rect(), colors);
    }
    const QRectF swatch = QRectF(rect()).adjusted(5, 5, -5, -5);
    DrawCheckerboard(painter, swatch, colors, 5);
    painter.setOpacity(isEnabled() ? 1 : 0.4);
    Shapes::Box(painter, swatch, color_, colors.border, 3);
}

}  // namespace lumirra
