#pragma once

#include <QWidget>
#include <array>

#include "settings/Control.h"

namespace lumirra {

/// One widget for each row of the table of controls, at its control's place.
using SettingWidgets = std::array<QWidget*, kControlCount>;

/// Finds them by their names. A row without its widget is a defect of the interface file: it stops
/// the program.
SettingWidgets FindSettingWidgets(const QWidget& window);

/// Gives every setting control what the table of controls says about it: its name
/// for people and for programs, tooltip, range, step and reset value, and the items of a pop-up.
/// No value is set.
void DressControls(const SettingWidgets& widgets);

}  // namespace lumirra
