#pragma once

#include "settings/ControlValues.h"

namespace lumirra {

// What a change made by the user does to the other controls. Pure, any thread; each gives the new
// values. Nothing is ever reported: text that a field does not accept is replaced.

/// Limits of a text field's number in the unit selected in `comboCustomCrop`; the minimum itself is
/// excluded by the decimal rule.
ValueRange FieldLimits(Control textField, const ControlValues& values);

/// The text that the field keeps of `text`: the text itself when it is accepted, else the fallback
/// or the nearest limit.
QString AcceptedText(Control textField, const QString& text, const ControlValues& values);

/// The number that a field of numbers stands for, whatever its text: limited to the row's range,
/// unless the row's number may follow from another field; the fallback when the text is no number
/// or the decimal rule refuses it. Always finite.
double NumberInForce(const ControlValues& values, Control textField);

/// The field's text was committed, with or without an edit; `values` hold the text that it showed
/// before. Its rule is applied and its stepper follows. A number that followed from another field
/// and was not edited stays as it is: the rule is for what is typed. The output dimensions are only
/// validated; `TypedDimension` does the rest.
ControlValues CommitField(ControlValues values, Control textField, const QString& text);

/// The stepper was moved: its field shows the value. A value that the field's rule refuses (a time
/// of 0.0 seconds) becomes what the rule makes of it, in both.
ControlValues MoveStepper(ControlValues values, Control stepper, float value);

/// The radio was chosen: it is on and the other of its pair off.
ControlValues ChooseRadio(ControlValues values, Control radio);

/// A row of the font list was chosen: another font no longer takes its place.
ControlValues ChooseListedFont(ControlValues values, int index);

}  // namespace lumirra
