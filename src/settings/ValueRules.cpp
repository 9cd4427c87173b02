#include "settings/ValueRules.h"

#include <algorithm>
#include <cmath>

#include "settings/NumberText.h"

namespace lumirra {
namespace {

QString FieldText(const ControlRow& stepper, float value) {
    switch (stepper.stepperText) {
        case StepperText::Tenths:
            return FixedText(static_cast<double>(value) / 10, 1);
        case StepperText::Number:
            return PlainText(value);
        case StepperText::Whole:
        case StepperText::WholeCeiling:
            break;
    }
    return FixedText(static_cast<double>(value), 0);
}

float StepperNumber(const ControlRow& stepper, const QString& fieldText) {
    const double number = FieldNumber(fieldText);
    switch (stepper.stepperText) {
        case StepperText::Tenths:
            return static_cast<float>(FieldNumber(FixedText(number * 10, 1)));
        case StepperText::WholeCeiling:
            return static_cast<float>(FieldNumber(FixedText(number, 0)));
        case StepperText::Whole:
        case StepperText::Number:
            break;
    }
    return static_cast<float>(number);
}

bool Parses(ValueRule rule, const QString& text) {
    switch (rule) {
        case ValueRule::Integer:
        case ValueRule::Crop:
            return ParseInteger(text).has_value();
        case ValueRule::Decimal:
            return ParseDecimal(text).has_value();
        case ValueRule::Free:
        case ValueRule::None:
            break;
    }
    return true;
}

/// Far beyond any picture; keeps what is computed from the number finite.
constexpr double kLargestNumber = 1e9;

/// What stands in the field is no one's typing: the stepper went along with it.
bool FollowedFromOther(const ControlValues& values, const ControlRow& row) {
    const auto number = ParseDecimal(values.Text(row.control));
    if (!row.followsOthers || !number || !std::isfinite(*number)) {
        return false;
    }
    if (!row.partner) {
        return true;
    }
    constexpr float kProfilePrecision = 1e-5F;  // a profile keeps six digits of the stepper
    const ControlRow& stepper = RowOf(*row.partner);
    const float expected = std::clamp(*number, static_cast<float>(stepper.minimum),
                                      static_cast<float>(stepper.maximum));
    return std::abs(values.Number(*row.partner) - expected) <= kProfilePrecision * expected;
}

}  // namespace

ValueRange FieldLimits(Control textField, const ControlValues& values) {
    const ControlRow& row = RowOf(textField);
    if (row.rule == ValueRule::Crop) {
        return RangeInForce(*row.partner, values.Index(Control::ComboCustomCrop));
    }
    return {row.minimum, row.maximum};
}

QString AcceptedText(Control textField, const QString& text, const ControlValues& values) {
    const ControlRow& row = RowOf(textField);
    if (row.rule == ValueRule::Free) {
        return text;
    }
    if (!Parses(row.rule, text)) {
        return row.fallback;
    }
    const ValueRange limits = FieldLimits(textField, values);
    const double number = FieldNumber(text);
    if (row.rule == ValueRule::Decimal && number <= limits.minimum) {
        return row.fallback;
    }
    if (number < limits.minimum) {
        return FixedText(limits.minimum, 0);
    }
    if (number > limits.maximum) {
        return FixedText(limits.maximum, 0);
    }
    return text;
}

double NumberInForce(const ControlValues& values, Control textField) {
    const ControlRow& row = RowOf(textField);
    const QString& text = values.Text(textField);
    const double number = FieldNumber(text);
    const bool refused = (row.rule == ValueRule::Decimal && number <= row.minimum) ||
                         (row.followsOthers && !std::isfinite(number));
    if (refused || !ParseDecimal(text)) {
        return FieldNumber(row.fallback);
    }
    return row.followsOthers ? std::clamp(number, -kLargestNumber, kLargestNumber)
                             : std::clamp(number, row.minimum, row.maximum);
}

ControlValues CommitField(ControlValues values, Control textField, const QString& text) {
    if (text == values.Text(textField) && FollowedFromOther(values, RowOf(textField))) {
        return values;
    }
    const QString accepted = AcceptedText(textField, text, values);
    values.SetText(textField, accepted);
    if (const auto stepper = RowOf(textField).partner) {
        values.SetNumber(*stepper, StepperNumber(RowOf(*stepper), accepted));
    }
    return values;
}

ControlValues MoveStepper(ControlValues values, Control stepper, float value) {
    const ControlRow& row = RowOf(stepper);
    values.SetNumber(stepper,
                     row.stepperText == StepperText::WholeCeiling ? std::ceil(value) : value);
    const QString shown = FieldText(row, values.Number(stepper));
    if (RowOf(*row.partner).rule == ValueRule::Decimal && FieldNumber(shown) <= 0) {
        return CommitField(std::move(values), *row.partner, shown);
    }
    values.SetText(*row.partner, shown);
    return values;
}

ControlValues ChooseRadio(ControlValues values, Control radio) {
    values.SetOn(*RowOf(radio).partner, false);
    values.SetOn(radio, true);
    return values;
}

ControlValues ChooseListedFont(ControlValues values, int index) {
    values.SetIndex(Control::ComboTextFontType, index);
    values.SetText(Control::FieldOtherFont, {});
    return values;
}

}  // namespace lumirra
