#include "settings/ControlValues.h"

#include <algorithm>
#include <cmath>

namespace lumirra {
namespace {

constexpr std::array kCropSteppers = {
    Control::StepperCustomCropOriginX, Control::StepperCustomCropOriginY,
    Control::StepperCustomCropWidth, Control::StepperCustomCropHeight};

bool IsCropStepper(Control control) {
    return std::find(kCropSteppers.begin(), kCropSteppers.end(), control) != kCropSteppers.end();
}

TextColor Clamped(const TextColor& color) {
    // The order of the arguments turns a component that is not a number into 0.
    const auto component = [](double c) { return std::min(1.0, std::max(0.0, c)); };
    return {component(color.red), component(color.green), component(color.blue),
            component(color.alpha)};
}

void SetInitial(ControlValues& values, const ControlRow& row) {
    switch (row.kind) {
        case ControlKind::Slider:
        case ControlKind::Stepper:
        case ControlKind::Number:
            return values.SetNumber(row.control, static_cast<float>(row.initial));
        case ControlKind::Check:
        case ControlKind::Radio:
            return values.SetOn(row.control, row.initial != 0);
        case ControlKind::PopUp:
            return values.SetIndex(row.control, static_cast<int>(row.initial));
        case ControlKind::Text:
            return values.SetText(row.control, row.initialText);
        case ControlKind::Color:
            return values.SetColor(row.control,
                                   {row.initial, row.initial, row.initial, row.initial});
    }
}

}  // namespace

ControlValues::ControlValues() {
    for (const ControlRow& row : ControlTable()) {
        SetInitial(*this, row);
    }
}

template <typename Kind>
const Kind& ControlValues::Get(Control control) const {
    return std::get<Kind>(values_[static_cast<std::size_t>(control)]);
}

void ControlValues::Set(Control control, Value value) {
    values_[static_cast<std::size_t>(control)] = std::move(value);
}

float ControlValues::Number(Control control) const {
    return Get<float>(control);
}
bool ControlValues::IsOn(Control control) const {
    return Get<bool>(control);
}
int ControlValues::Index(Control control) const {
    return Get<int>(control);
}
const QString& ControlValues::Text(Control control) const {
    return Get<QString>(control);
}
const TextColor& ControlValues::Color(Control control) const {
    return Get<TextColor>(control);
}

void ControlValues::SetNumber(Control control, float value) {
    if (std::isnan(value)) {
        return;
    }
    const ValueRange range = RangeInForce(control, cropUnitInForce_);
    Set(control,
        std::clamp(value, static_cast<float>(range.minimum), static_cast<float>(range.maximum)));
}

void ControlValues::SetOn(Control control, bool on) {
    Set(control, on);
}

void ControlValues::SetIndex(Control control, int index) {
    Set(control, std::clamp(index, 0, static_cast<int>(RowOf(control).maximum)));
}

void ControlValues::SetText(Control control, const QString& text) {
    Set(control, text);
}

void ControlValues::SetColor(Control control, const TextColor& color) {
    Set(control, Clamped(color));
}

void ControlValues::SetCropUnitInForce(int unit) {
    cropUnitInForce_ = std::clamp(unit, 0, 1);
    for (const Control stepper : kCropSteppers) {
        SetNumber(stepper, Number(stepper));
    }
}

ControlValues ResetGroupOf(ControlValues values, ResetGroup group) {
    if (group == ResetGroup::CropResize) {
        values.SetCropUnitInForce(static_cast<int>(RowOf(Control::ComboCustomCrop).initial));
    }
    for (const ControlRow& row : ControlTable()) {
        if (row.resetGroup == group && group != ResetGroup::None) {
            SetInitial(values, row);
        }
    }
    return values;
}

ValueRange RangeInForce(Control control, int cropUnit) {
    if (cropUnit == 0 && IsCropStepper(control)) {
        return {0, 100};
    }
    return {RowOf(control).minimum, RowOf(control).maximum};
}

AcceptedTexts StoreTextFieldsValues(const ControlValues& values) {
    AcceptedTexts accepted;
    for (const Control field : TrackedFields()) {
        accepted[field] = values.Text(field);
    }
    return accepted;
}

bool DiffersFromAccepted(const ControlValues& values, const AcceptedTexts& accepted,
                         Control field) {
    const auto entry = accepted.find(field);
    return entry == accepted.end() || entry->second != values.Text(field);
}

ChangeConsequence ConsequenceOf(Control control, const ControlValues& values, bool textDiffers) {
    const ChangeRule& rule = RowOf(control).change;
    const bool ready = textDiffers || !rule.onlyWhenTextDiffers;
    const bool switchedOn = !rule.onlyWhenOn || values.IsOn(*rule.onlyWhenOn);
    // A tracked field notes the texts only together with what it refreshes; a stepper always.
    const bool snapshotReady = ready && (switchedOn || !rule.onlyWhenTextDiffers);
    return {.snapshot = rule.snapshot && snapshotReady,
            .preview = rule.preview && ready && switchedOn,
            .geometry = rule.geometry && ready && switchedOn,
            .markModified = rule.mark == MarkModified::Always ||
                            (rule.mark == MarkModified::WhenTextDiffers && textDiffers)};
}

}  // namespace lumirra
