#pragma once

#include <QUrl>

class QWidget;

namespace lumirra {

/// The pages behind the two help commands: those that ship with the program, or the addresses that
/// were given when it was configured.
QUrl VideoHelpAddress();
QUrl PicturesHelpAddress();

void ShowAbout(QWidget& parent);
void ShowShortcuts(QWidget& parent);

}  // namespace lumirra
