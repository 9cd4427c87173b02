#include "settings/ProfileTail.h"

#include <QJsonDocument>

#include "settings/ControlJson.h"

namespace lumirra {
namespace {

constexpr auto kMark = QLatin1String("lumirra");
constexpr int kVersion = 1;

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
                                ? JsonOf(profile.values, row) != JsonOf(initial, row)
                                : LosesLineBreaks(profile.values, row);
        if (wanted) {
            tail.insert(row.name, JsonOf(profile.values, row));
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
            TakeJson(profile.values, row, value);
        }
    }
    profile.unknown = object;
}

}  // namespace lumirra
