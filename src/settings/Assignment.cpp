#include "settings/Assignment.h"

#include <algorithm>
#include <cctype>

#include "imaging/Words.h"
#include "settings/CropResize.h"
#include "settings/NumberText.h"
#include "settings/ValueRules.h"

namespace lumirra {
namespace {

QString RangeText(ValueRange range) {
    return PlainText(static_cast<float>(range.minimum)) + QStringLiteral(" to ") +
           PlainText(static_cast<float>(range.maximum));
}

Failure Refused(const ControlRow& row, const QString& text, const QString& expected) {
    return {Failure::Kind::Invalid,
            QStringLiteral("%1 does not take \"%2\": expected %3.").arg(row.name, text, expected),
            {}};
}

Outcome<ControlValues> AssignNumber(ControlValues values, const ControlRow& row,
                                    const QString& text) {
    const ValueRange range = RangeInForce(row.control, values.CropUnitInForce());
    const auto number = ParseDecimal(text);
    const bool fits = number && *number >= static_cast<float>(range.minimum) &&
                      *number <= static_cast<float>(range.maximum);
    if (!fits) {
        return Refused(row, text, QStringLiteral("a number from ") + RangeText(range));
    }
    if (row.kind == ControlKind::Stepper) {
        return MoveStepper(std::move(values), row.control, *number);
    }
    values.SetNumber(row.control, *number);
    return values;
}

std::optional<bool> ParseState(const QString& text) {
    if (text == QLatin1String("1") || text == QLatin1String("on")) {
        return true;
    }
    if (text == QLatin1String("0") || text == QLatin1String("off")) {
        return false;
    }
    return std::nullopt;
}

Outcome<ControlValues> AssignState(ControlValues values, const ControlRow& row,
                                   const QString& text) {
    const auto on = ParseState(text);
    if (!on) {
        return Refused(row, text, QStringLiteral("1 or 0"));
    }
    if (row.kind == ControlKind::Check) {
        values.SetOn(row.control, *on);
        return values;
    }
    if (*on) {
        return ChooseRadio(std::move(values), row.control);
    }
    if (values.IsOn(row.control)) {
        // A radio goes out only when the other of its pair is chosen.
        return Refused(row, text, QStringLiteral("%1=1 instead").arg(RowOf(*row.partner).name));
    }
    return values;
}

Outcome<ControlValues> AssignIndex(ControlValues values, const ControlRow& row, const QString& text,
                                   ImageSize base) {
    const QStringList& items = PopUpItems(row.control);
    const auto index = ParseInteger(text).value_or(items.indexOf(text));
    if (index < 0 || index >= items.size()) {
        return Refused(row, text,
                       Filled(QStringLiteral("0 to %1, or one of \"%2\""), items.size() - 1,
                              items.join(QStringLiteral("\", \""))));
    }
    if (row.control == Control::ComboCustomCrop) {
        return ChangeCropUnit(std::move(values), static_cast<int>(index), base);
    }
    if (row.control == Control::ComboTextFontType) {
        return ChooseListedFont(std::move(values), static_cast<int>(index));
    }
    values.SetIndex(row.control, static_cast<int>(index));
    return values;
}

Outcome<ControlValues> AssignText(ControlValues values, const ControlRow& row,
                                  const QString& text) {
    if (AcceptedText(row.control, text, values) != text) {
        const ValueRange limits = FieldLimits(row.control, values);
        return Refused(row, text,
                       row.rule == ValueRule::Decimal
                           ? QStringLiteral("a number above 0 and up to ") +
                                 PlainText(static_cast<float>(limits.maximum))
                           : QStringLiteral("a whole number from ") + RangeText(limits));
    }
    return CommitField(std::move(values), row.control, text);
}

std::optional<TextColor> ParseColor(const QString& text) {
    const QString digits = text.mid(1);
    const auto isHex = [](QChar c) { return c.unicode() < 128 && isxdigit(c.unicode()) != 0; };
    if (!text.startsWith(QLatin1Char('#')) || (digits.size() != 6 && digits.size() != 8) ||
        !std::all_of(digits.cbegin(), digits.cend(), isHex)) {
        return std::nullopt;
    }
    const auto component = [&](int i) {
        return digits.size() > 2 * i ? digits.mid(2 * i, 2).toInt(nullptr, 16) / 255.0 : 1.0;
    };
    return TextColor{component(0), component(1), component(2), component(3)};
}

Outcome<ControlValues> AssignColor(ControlValues values, const ControlRow& row,
                                   const QString& text) {
    const auto color = ParseColor(text);
    if (!color) {
        return Refused(row, text, QStringLiteral("#rrggbb or #rrggbbaa"));
    }
    values.SetColor(row.control, *color);
    return values;
}

struct KindWords {
    QString kind;
    QString range;
    QString initial;
};

QString NumberedItems(Control popUp) {
    QStringList items;
    for (const QString& item : PopUpItems(popUp)) {
        items << Filled(QStringLiteral("%1=\"%2\""), items.size(), item);
    }
    return items.join(QStringLiteral(", "));
}

KindWords WordsOf(const ControlRow& row) {
    const QString range = RangeText({row.minimum, row.maximum});
    const QString number = PlainText(static_cast<float>(row.initial));
    switch (row.kind) {
        case ControlKind::Slider:
            return {QStringLiteral("slider"), range, number};
        case ControlKind::Stepper:
            return {QStringLiteral("stepper"), range, number};
        case ControlKind::Number:
            return {QStringLiteral("number"), range, number};
        case ControlKind::Check:
            return {QStringLiteral("check"), QStringLiteral("0 or 1"), number};
        case ControlKind::Radio:
            return {QStringLiteral("radio"), QStringLiteral("0 or 1"), number};
        case ControlKind::PopUp:
            return {QStringLiteral("pop-up"), range, number};
        case ControlKind::Color:
            return {QStringLiteral("colour"), QStringLiteral("#rrggbb[aa]"),
                    QStringLiteral("#ffffffff")};
        case ControlKind::Text:
            break;
    }
    const QString initial = QLatin1Char('"') + row.initialText + QLatin1Char('"');
    const bool isFree = row.rule == ValueRule::Free;
    const QString above = row.rule == ValueRule::Decimal ? QStringLiteral("above ") : QString();
    return {QStringLiteral("text"), isFree ? QStringLiteral("any") : above + range, initial};
}

QString DescriptionOf(const ControlRow& row) {
    QString text = QString::fromUtf8(row.tooltip);
    if (*row.unit != '\0') {
        text += QStringLiteral(" (%1)").arg(QString::fromUtf8(row.unit));
    }
    if (row.rule == ValueRule::Crop ||
        RangeInForce(row.control, 0) != RangeInForce(row.control, 1)) {
        text += QStringLiteral("; 0 to 100 in per cent");
    }
    if (row.kind == ControlKind::PopUp) {
        text += QStringLiteral(": ") + NumberedItems(row.control);
    }
    return text;
}

}  // namespace

Outcome<ControlValues> AssignControl(const ControlValues& values, const QString& name,
                                     const QString& text, ImageSize base) {
    const auto control = ControlByName(name);
    if (!control) {
        return Failure{Failure::Kind::Invalid,
                       QStringLiteral("There is no setting called \"%1\".").arg(name),
                       {}};
    }
    const ControlRow& row = RowOf(*control);
    switch (row.kind) {
        case ControlKind::Slider:
        case ControlKind::Stepper:
        case ControlKind::Number:
            return AssignNumber(values, row, text);
        case ControlKind::Check:
        case ControlKind::Radio:
            return AssignState(values, row, text);
        case ControlKind::PopUp:
            return AssignIndex(values, row, text, base);
        case ControlKind::Color:
            return AssignColor(values, row, text);
        case ControlKind::Text:
            break;
    }
    return AssignText(values, row, text);
}

QString ListSettings() {
    QString text;
    const auto line = [&](const QString& name, const KindWords& words, const QString& description) {
        text += name.leftJustified(37) + words.kind.leftJustified(9) +
                words.range.leftJustified(20) + words.initial.leftJustified(12) + description +
                QLatin1Char('\n');
    };
    line(QStringLiteral("NAME"),
         {QStringLiteral("KIND"), QStringLiteral("RANGE"), QStringLiteral("INITIAL")},
         QStringLiteral("WHAT IT DOES"));
    for (const ControlRow& row : ControlTable()) {
        line(row.name, WordsOf(row), DescriptionOf(row));
    }
    return text;
}

}  // namespace lumirra
