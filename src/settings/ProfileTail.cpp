#include "settings/ProfileTail.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>

#include "settings/NumberText.h"

namespace lumirra {
namespace {

constexpr auto kMark = QLatin1String("lumirra");
constexpr int kVersion = 1;

QJsonValue Coded(const ControlValues& values, const ControlRow& row) {
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

void TakeColor(ControlValues& values, Control control, const QJsonArray& components) {
    if (components.size() == 4) {
        values.SetColor(control, {components[0].toDouble(), components[1].toDouble(),
                                  components[2].toDouble(), components[3].toDouble()});
    }
}

void TakeValue(ControlValues& values, const ControlRow& row, const QJsonValue& value) {
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

bool LosesLineBreaks(const ControlValues& values, const ControlRow& row) {
    return row.kind == ControlKind::Text &&
           InOneLine(values.Text(row.control)) != values.Text(row.control);
}

/// A profile whose line was changed elsewhere no longer means what its tail holds.
bool LineHoldsTheSameWords(const ControlValues& values, const ControlRow& row,
                           const QJsonValue& value) {
    return value.isString() && InOneLine(value.toString()) == values.Text(row.control);
}

}  // namespace

bool IsLineBreak(QChar c) {
    const char16_t code = c.unicode();
    return (code >= 0x0A && code <= 0x0D) || code == 0x85 || code == 0x2028 || code == 0x2029;
}

QString InOneLine(const QString& text) {
    QString line;
    bool inBreak = false;
    for (const QChar c : text) {
        if (!IsLineBreak(c)) {
            line += c;
        } else if (!inBreak) {
            line += QLatin1Char(' ');
        }
        inBreak = IsLineBreak(c);
    }
    return line;
}

QString ProfileTail(const Profile& profile) {
    const ControlValues initial;
    QJsonObject tail = profile.unknown;
    for (const ControlRow& row : ControlTable()) {
        const bool wanted = row.scope == SettingScope::ProfileTail
                                ? Coded(profile.values, row) != Coded(initial, row)
                                : LosesLineBreaks(profile.values, row);
        if (wanted) {
            tail.insert(row.name, Coded(profile.values, row));
        }
    }
    if (tail.isEmpty()) {
        return {};
    }
    tail.insert(kMark, kVersion);
    QString text = QString::fromUtf8(QJsonDocument(tail).toJson(QJsonDocument::Compact));
    for (const char16_t c : {u'\u0085', u'\u2028', u'\u2029'}) {
        // The only line breaks that JSON leaves as they are; they can stand in strings alone.
        text.replace(QChar(c), QStringLiteral("\\u%1").arg(c, 4, 16, QLatin1Char('0')));
    }
    return text;
}

void TakeProfileTail(Profile& profile, const QString& tail) {
    QJsonObject object = QJsonDocument::fromJson(tail.toUtf8()).object();
    if (!object.take(kMark).isDouble()) {
        return;
    }
    for (const ControlRow& row : ControlTable()) {
        if (row.scope != SettingScope::ProfileTail && row.kind != ControlKind::Text) {
            continue;
        }
        const QJsonValue value = object.take(row.name);
        if (row.scope == SettingScope::ProfileTail ||
            LineHoldsTheSameWords(profile.values, row, value)) {
            TakeValue(profile.values, row, value);
        }
    }
    profile.unknown = object;
}

}  // namespace lumirra
