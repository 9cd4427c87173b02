#include "settings/UserSettings.h"

#include <QSettings>

namespace lumirra {

int UserIndex(Control popUp) {
    const ControlRow& row = RowOf(popUp);
    const QString kept = QSettings().value(row.name).toString();
    const auto index = static_cast<int>(PopUpItems(popUp).indexOf(kept));
    return index < 0 ? static_cast<int>(row.initial) : index;
}

void KeepUserIndex(Control popUp, int index) {
    const QStringList& items = PopUpItems(popUp);
    if (index >= 0 && index < items.size()) {
        // By its words: an item may be added before it.
        QSettings().setValue(RowOf(popUp).name, items.at(index));
    }
}

}  // namespace lumirra
