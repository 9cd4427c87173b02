#pragma once

#include "settings/Control.h"

namespace lumirra {

// The settings of scope `User`, each in the user's settings file under its row's name. Main thread.

/// The index that was kept; the initial one when there is none or it is no item's.
int UserIndex(Control popUp);
/// Keeps the item; nothing when the index is no item's.
void KeepUserIndex(Control popUp, int index);

}  // namespace lumirra
