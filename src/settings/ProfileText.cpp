#include "settings/ProfileText.h"

#include <QFile>
#include <QStringDecoder>
#include <algorithm>
#include <array>

#include "imaging/files/FileName.h"
#include "imaging/files/FileReplacement.h"
#include "settings/NumberText.h"
#include "settings/ProfileTail.h"

namespace lumirra {
namespace {

constexpr qint64 kLargestProfile = 1 << 20;

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

bool ReadColor(ControlValues& values, const ControlRow& row, const QStringList& lines) {
    std::array<double, 3> components{};
    for (std::size_t i = 0; i < components.size(); ++i) {
        const auto number = ParseDecimal(lines[row.profileLine - 1 + static_cast<int>(i)]);
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
            if (const auto number = ParseDecimal(line)) {
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

QString ProfileText(const Profile& profile) {
    QString text;
    for (const ControlRow& row : ControlTable()) {
        if (row.scope == SettingScope::ProfileLine) {
            text += Coded(profile.values, row) + QLatin1Char('\n');
        }
    }
    return text + ProfileTail(profile);
}

std::optional<Profile> ProfileFromText(const QString& text) {
    const QStringList pieces = SplitAtLineBreaks(text);
    if (pieces.size() != kProfileLines + 1) {
        return std::nullopt;
    }
    Profile profile;
    for (const ControlRow& row : ControlTable()) {
        if (row.scope == SettingScope::ProfileLine && !ReadRow(profile.values, row, pieces)) {
            return std::nullopt;
        }
    }
    TakeProfileTail(profile, pieces.back());
    return profile;
}

Outcome<Profile> LoadProfile(const QString& path) {
    QFile file;
    // Anything but a regular file might never come to an end.
    if (!FactsOf(path).isFile || OpenForReading(file, path) != 0) {
        return CannotLoad(Failure::Kind::Unreadable, path);
    }
    const QByteArray bytes = file.read(kLargestProfile + 1);
    if (file.error() != QFileDevice::NoError || bytes.size() > kLargestProfile) {
        return CannotLoad(Failure::Kind::TooLarge, path);
    }
    const auto text = Decoded(bytes);
    auto profile = text ? ProfileFromText(*text) : std::nullopt;
    if (!profile) {
        return CannotLoad(Failure::Kind::Invalid, path);
    }
    return *std::move(profile);
}

Outcome<Done> SaveProfile(const Profile& profile, const QString& path) {
    const QByteArray bytes = ProfileText(profile).toUtf8();
    auto saved = ReplaceFile(path, bytes, FileKind::UsersOwn);
    if (!saved) {
        return Failure{saved.failure().kind,
                       QStringLiteral("Could not save profile. ") + saved.failure().message, path};
    }
    return saved;
}

}  // namespace lumirra
