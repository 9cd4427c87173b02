#pragma once

#include <QString>
#include <array>
#include <map>
#include <variant>

#include "imaging/EffectSettings.h"
#include "settings/Control.h"

namespace lumirra {

/// One snapshot of all settings of a project. A value: copy, compare and hand it to workers. Each
/// accessor is for the kinds it names alone. What is stored always lies in the control's range:
/// numbers and indices beyond it become the nearest limit, a number that is not one leaves the old
/// value. Texts are stored as they are.
class ControlValues {
  public:
    /// The initial state of a new project.
    ControlValues();

    float Number(Control number) const;  ///< slider, stepper or number field
    bool IsOn(Control checkOrRadio) const;
    int Index(Control popUp) const;
    const QString& Text(Control textField) const;
    const TextColor& Color(Control colorWell) const;

    void SetNumber(Control number, float value);
    void SetOn(Control checkOrRadio, bool on);
    void SetIndex(Control popUp, int index);
    void SetText(Control textField, const QString& text);
    void SetColor(Control colorWell, const TextColor& color);

    /// The unit that the four custom crop values are expressed in (`comboCustomCropSelection`):
    /// 0 per cent, 1 pixels.
    int CropUnitInForce() const { return cropUnitInForce_; }
    /// Crop steppers beyond the unit's range are brought into it.
    void SetCropUnitInForce(int unit);

    friend bool operator==(const ControlValues&, const ControlValues&) = default;

  private:
    using Value = std::variant<float, bool, int, QString, TextColor>;

    template <typename Kind>
    const Kind& Get(Control control) const;
    void Set(Control control, Value value);

    std::array<Value, kControlCount> values_;
    int cropUnitInForce_ = 0;
};

inline ControlValues InitialControlValues() {
    return {};
}

/// The values with the group's controls at their reset values, everything else as it was. The
/// output dimensions become "0"; the caller works them out again when there is a picture.
ControlValues ResetGroupOf(ControlValues values, ResetGroup group);

struct ValueRange {
    double minimum = 0;
    double maximum = 0;
    friend bool operator==(const ValueRange&, const ValueRange&) = default;
};

/// The row's range; for the four custom crop steppers that of the unit.
ValueRange RangeInForce(Control control, int cropUnit);

/// The last accepted text of each tracked field. A field without an entry differs from every text.
using AcceptedTexts = std::map<Control, QString>;
AcceptedTexts StoreTextFieldsValues(const ControlValues& values);
bool DiffersFromAccepted(const ControlValues& values, const AcceptedTexts& accepted, Control field);

/// What a change of the control asks of the window now.
struct ChangeConsequence {
    bool snapshot = false;
    bool preview = false;
    bool geometry = false;
    bool markModified = false;
    friend bool operator==(const ChangeConsequence&, const ChangeConsequence&) = default;
};

/// `textDiffers`: for a text field, whether its text differs from the accepted one (for an output
/// dimension: whether its whole part differs from the last); ignored for other kinds.
ChangeConsequence ConsequenceOf(Control control, const ControlValues& values, bool textDiffers);

}  // namespace lumirra
