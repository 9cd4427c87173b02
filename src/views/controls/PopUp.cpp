#include "views/controls/PopUp.h"

#include <QWheelEvent>

namespace lumirra {

PopUp::PopUp(QWidget* parent) : QComboBox(parent) {
    setFocusPolicy(Qt::StrongFocus);  // not taken by the wheel
}

void PopUp::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QComboBox::wheelEvent(event);
    } else {
        event->ignore();
    }
}

}  // namespace lumirra
