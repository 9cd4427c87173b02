#include "settings/ProfileText.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <cmath>

#include "settings/NumberText.h"

namespace lumirra {
namespace {

constexpr qint64 kLargestProfile = 1 << 20;

bool IsLineBreak(QChar c) {
    const char16_t code = c.unicode();
    return (code >= 0x0A && code <= 0x0D) || code == 0x85 || code == 0x2028 || code == 0x2029;
}

QStringList SplitAtLineBreaks(const QString& text) {
    QStringList pieces;
    qsizetype begin = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (IsLineBreak(text[i])) {
            pieces << text.mid(begin, i - begin);
            begin = i + 1;
        }
    }
    return pieces << text.mid(begin);
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

QString Coded(const ControlValues& values, const ControlRow& row) {
    switch (row.coding) {
        case ProfileCoding::Integer:
            return QString::number(row.kind == ControlKind::PopUp ? values.Index(row.control)
                                                                  : int(values.IsOn(row.control)));
        case ProfileCoding::Float:
            return PointText(static_cast<double>(values.Number(row.control)), 6);
        case ProfileCoding::Text:
            return InOneLine(values.Text(row.control));
        case ProfileCoding::Color:
            break;
    }
    const TextColor& color = values.Color(row.control);
    return QStringList{PointText(color.red, 15), PointText(color.green, 15),
                       PointText(color.blue, 15)}
        .join(QLatin1Char('\n'));
}

bool ReadInteger(ControlValues& values, const ControlRow& row, const QString& line) {
    const auto number = ParseInteger(line);
    if (!number) {
        return false;
    }
    const auto limited = std::clamp<long long>(*number, 0, static_cast<long long>(row.maximum));
    if (row.kind != ControlKind::PopUp) {
        values.SetOn(row.control, limited != 0);
        return true;
    }
    values.SetIndex(row.control, static_cast<int>(limited));
    if (row.control == Control::ComboCustomCrop) {
        // The lines after this one hold numbers in that unit.
        values.SetCropUnitInForce(static_cast<int>(limited));
    }
    return true;
}

std::optional<float> FiniteNumber(const QString& line) {
    const auto number = ParseDecimal(line);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

bool ReadColor(ControlValues& values, const ControlRow& row, const QStringList& lines) {
    std::array<double, 3> components{};
    for (std::size_t i = 0; i < components.size(); ++i) {
        const auto number = FiniteNumber(lines[row.profileLine - 1 + static_cast<int>(i)]);
        if (!number) {
            return false;
        }
        components[i] = static_cast<double>(*number);
    }
    values.SetColor(row.control, {components[0], components[1], components[2], 1});
    return true;
}

bool ReadRow(ControlValues& values, const ControlRow& row, const QStringList& lines) {
    const QString& line = lines[row.profileLine - 1];
    switch (row.coding) {
        case ProfileCoding::Integer:
            return ReadInteger(values, row, line);
        case ProfileCoding::Float:
            if (const auto number = FiniteNumber(line)) {
                values.SetNumber(row.control, *number);
                return true;
            }
            return false;
        case ProfileCoding::Text:
            values.SetText(row.control, line);
            return true;
        case ProfileCoding::Color:
            break;
    }
    return ReadColor(values, row, lines);
}

std::optional<QString> Decoded(const QByteArray& bytes) {
    const auto encoding = QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8);
    QStringDecoder decoder(encoding);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

Failure CannotLoad(Failure::Kind kind, const QString& path) {
    return {kind, QStringLiteral("Could not load profile."), path};
}

}  // namespace

QString ProfileText(const ControlValues& values) {
    QString text;
    for (const ControlRow& row : ControlTable()) {
        text += Coded(values, row) + QLatin1Char('\n');
    }
    return text;
}

std::optional<ControlValues> ValuesFromProfile(const QString& text) {
    const QStringList lines = SplitAtLineBreaks(text);
    if (lines.size() != kProfileLines + 1) {
        return std::nullopt;
    }
    ControlValues values;
    for (const ControlRow& row : ControlTable()) {
        if (!ReadRow(values, row, lines)) {
            return std::nullopt;
        }
    }
    return values;
}

Outcome<ControlValues> LoadProfile(const QString& path) {
    QFile file(path);
    // Anything but a regular file might never come to an end.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return CannotLoad(Failure::Kind::Unreadable, path);
    }
    const QByteArray bytes = file.read(kLargestProfile + 1);
    if (file.error() != QFileDevice::NoError || bytes.size() > kLargestProfile) {
        return CannotLoad(Failure::Kind::TooLarge, path);
    }
    const auto text = Decoded(bytes);
    const auto values = text ? ValuesFromProfile(*text) : std::nullopt;
    if (!values) {
        return CannotLoad(Failure::Kind::Invalid, path);
    }
    return *values;
}

Outcome<Done> SaveProfile(const ControlValues& values, const QString& path) {
    const QByteArray bytes = ProfileText(values).toUtf8();
    const QFileInfo target(path);
    QSaveFile file(path);
    // The rename at the end would put a file in place of a device or a pipe.
    if ((target.exists() && !target.isFile()) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size() || !file.commit()) {
        return Failure{Failure::Kind::NotWritable, QStringLiteral("Could not save profile."), path};
    }
    return Done{};
}

}  // namespace lumirra
