#pragma once

#include <QUrl>
#include <vector>

class QWidget;

namespace lumirra {

/// The pages behind the two help commands: those that ship with the program, or the addresses that
/// were given when it was configured.
QUrl VideoHelpAddress();
QUrl PicturesHelpAddress();

/// Where the program can be rated, given when it was configured; empty when there is no such place.
QUrl StoreAddress();

/// The keys of one line of the page of shortcuts, separated by commas, and what they do.
struct ShortcutRow {
    const char* keys;
    const char* what;
};
std::vector<ShortcutRow> ShortcutRows();

void ShowAbout(QWidget& parent);
void ShowShortcuts(QWidget& parent);

}  // namespace lumirra
