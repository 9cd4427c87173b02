#pragma once

#include <QImage>
#include <QRect>
#include <QString>

class QPainter;
class QPalette;

namespace lumirra {

enum class CellLook : quint8 { Fresh, NotSelected, Selected };

/// One frame in the strip: its thumbnail in the middle of its cell, and the cell's border. Drawn
/// when it can be seen, no widget of its own.
struct ImageViewFrame {
    CellLook look = CellLook::Fresh;
    const QImage* thumbnail = nullptr;  ///< null: not read yet; without area: cannot be read
    bool hasKeyboard = false;
    QString caption;       ///< shown in the lower corner; empty: none
    QString badge;         ///< shown in the upper corner; empty: none
    bool isMoved = false;  ///< dragged elsewhere just now

    /// `thumbnail` is drawn pixel by pixel for the painter's device.
    void Draw(QPainter& painter, const QRect& cell, const QPalette& palette) const;
};

}  // namespace lumirra
