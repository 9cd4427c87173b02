#pragma once

#include <QJsonObject>
#include <QJsonValue>

#include "settings/Control.h"
#include "settings/ControlValues.h"

namespace lumirra {

// Setting values as JSON: numbers, true and false, texts, a colour as four numbers. Pure.

QJsonValue JsonOf(const ControlValues& values, const ControlRow& row);
/// A number or an index beyond the row's range becomes the nearest limit; a value of another kind
/// changes nothing.
void TakeJson(ControlValues& values, const ControlRow& row, const QJsonValue& value);

/// All of the project's settings by name.
QJsonObject JsonOf(const ControlValues& values);
/// Initial values where the object has none that fit.
ControlValues ValuesFromJson(const QJsonObject& object);

}  // namespace lumirra
