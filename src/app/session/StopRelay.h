#pragma once

#include <QObject>

namespace lumirra {

/// Takes the word that the program is to end from any thread to the main one.
class StopRelay : public QObject {
    Q_OBJECT

  Q_SIGNALS:
    void Asked();
};

}  // namespace lumirra
