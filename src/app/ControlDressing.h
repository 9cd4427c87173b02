#pragma once

class QWidget;

namespace lumirra {

/// Gives every setting control of the window what the table of controls says about it: its name
/// for people and for programs, tooltip, range, step and reset value, and the items of a pop-up.
/// No value is set. A row without its widget is a defect of the interface file: it stops the
/// program.
void DressControls(QWidget& window);

}  // namespace lumirra
