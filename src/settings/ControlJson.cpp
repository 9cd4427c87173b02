#include "settings/ControlJson.h"

#include <QJsonArray>
#include <algorithm>

#include "settings/NumberText.h"

namespace lumirra {
namespace {

constexpr auto kCropUnit = QLatin1String("cropUnitInForce");

void TakeColor(ControlValues& values, Control control, const QJsonArray& components) {
    if (components.size() == 4) {
        values.SetColor(control, {components[0].toDouble(), components[1].toDouble(),
                                  components[2].toDouble(), components[3].toDouble()});
    }
}

}  // namespace

QJsonValue JsonOf(const ControlValues& values, const ControlRow& row) {
    switch (row.kind) {
        case ControlKind::Slider:
        case ControlKind::Stepper:
        case ControlKind::Number:
            // The shortest text of the single-precision number: 0.1, not 0.10000000149.
            return FieldNumber(PlainText(values.Number(row.control)));
        case ControlKind::Check:
        case ControlKind::Radio:
            return values.IsOn(row.control);
        case ControlKind::PopUp:
            return values.Index(row.control);
        case ControlKind::Text:
            return values.Text(row.control);
        case ControlKind::Color:
            break;
    }
    const TextColor& color = values.Color(row.control);
    return QJsonArray{color.red, color.green, color.blue, color.alpha};
}

void TakeJson(ControlValues& values, const ControlRow& row, const QJsonValue& value) {
    switch (row.kind) {
        case ControlKind::Slider:
        case ControlKind::Stepper:
        case ControlKind::Number:
            if (value.isDouble()) {
                values.SetNumber(row.control, static_cast<float>(std::clamp(
                                                  value.toDouble(), row.minimum, row.maximum)));
            }
            return;
        case ControlKind::Check:
        case ControlKind::Radio:
            values.SetOn(row.control, value.toBool(values.IsOn(row.control)));
            return;
        case ControlKind::PopUp:
            values.SetIndex(row.control, value.toInt(values.Index(row.control)));
            return;
        case ControlKind::Text:
            values.SetText(row.control, value.toString(values.Text(row.control)));
            return;
        case ControlKind::Color:
            TakeColor(values, row.control, value.toArray());
            return;
    }
}

QJsonObject JsonOf(const ControlValues& values) {
    QJsonObject object;
    for (const ControlRow& row : ControlTable()) {
        if (row.scope != SettingScope::User) {
            object.insert(row.name, JsonOf(values, row));
        }
    }
    object.insert(kCropUnit, values.CropUnitInForce());
    return object;
}

ControlValues ValuesFromJson(const QJsonObject& object) {
    ControlValues values;
    values.SetCropUnitInForce(object.value(kCropUnit).toInt());
    for (const ControlRow& row : ControlTable()) {
        if (row.scope != SettingScope::User) {
            TakeJson(values, row, object.value(row.name));
        }
    }
    return values;
}

}  // namespace lumirra
