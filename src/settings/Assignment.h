#pragma once

#include "imaging/Geometry.h"
#include "imaging/Outcome.h"
#include "settings/ControlValues.h"

namespace lumirra {

/// Sets the control of that outlet name from text, as if the user had done it: a field sets its
/// stepper, a stepper its field, a radio that is chosen clears its pair, the crop unit converts the
/// custom crop of a picture of size `base` (without area: only the unit changes). An output
/// dimension is validated and stored, the other one does not follow.
/// Sliders and steppers take a number, checks and radios 1 or 0 (on, off), pop-ups an index or an
/// item's text, the colour #rrggbb or #rrggbbaa. What the control would not take unchanged is a
/// failure whose message names the control.
Outcome<ControlValues> AssignControl(const ControlValues& values, const QString& name,
                                     const QString& text, ImageSize base);

/// The table of all controls as text: name, kind, range, initial value and what it does.
QString ListSettings();

}  // namespace lumirra
