#include "cli/papers/ManPage.h"

#include <QStringList>

#include "cli/OptionTable.h"
#include "imaging/Words.h"
#include "settings/Control.h"
#include "settings/NumberText.h"

namespace lumirra {
namespace {

/// As the formatter prints it: a bare dash would become a hyphen, a dot in front a request.
QString Roff(QString text) {
    text.replace(QLatin1Char('\\'), QStringLiteral("\\e"))
        .replace(QLatin1Char('-'), QStringLiteral("\\-"));
    if (text.startsWith(QLatin1Char('.')) || text.startsWith(QLatin1Char('\''))) {
        text.prepend(QStringLiteral("\\&"));
    }
    return text;
}

QString Option(const OptionRow& row) {
    QString names;
    if (row.letter != 0) {
        names = QStringLiteral("\\fB\\-%1\\fR, ").arg(QLatin1Char(row.letter));
    }
    names += QStringLiteral("\\fB%1\\fR").arg(Roff(QStringLiteral("--") + QLatin1String(row.name)));
    if (row.kind != OptionValue::None) {
        names += QStringLiteral(" \\fI%1\\fR").arg(Roff(QLatin1String(row.value)));
    }
    return QStringLiteral(".TP\n%1\n%2\n").arg(names, Roff(QLatin1String(row.help)));
}

/// "0 or 1", "-1 to 1", '"Center", ...': what the setting takes.
QString Range(const ControlRow& row) {
    switch (row.kind) {
        case ControlKind::Check:
        case ControlKind::Radio:
            return QStringLiteral("0 or 1");
        case ControlKind::Color:
            return QStringLiteral("#rrggbb or #rrggbbaa");
        case ControlKind::PopUp: {
            const QStringList items = PopUpItems(row.control);
            return Filled(QStringLiteral("0 to %1, or \"%2\""), items.size() - 1,
                          items.join(QStringLiteral("\", \"")));
        }
        default:
            return row.rule == ValueRule::Free
                       ? QStringLiteral("any text")
                       : QStringLiteral("%1 to %2")
                             .arg(PlainText(static_cast<float>(row.minimum)),
                                  PlainText(static_cast<float>(row.maximum)));
    }
}

QString Setting(const ControlRow& row) {
    return QStringLiteral(".TP\n\\fB%1\\fR\n%2.\n%3.\n")
        .arg(Roff(row.name), Roff(QString::fromUtf8(row.tooltip)), Roff(Range(row)));
}

}  // namespace

void FillManPage(QString& page) {
    QString options;
    for (const OptionRow& row : OptionTable()) {
        options += Option(row);
    }
    QString settings;
    for (const ControlRow& row : ControlTable()) {
        settings += Setting(row);
    }
    page.replace(QStringLiteral("@OPTIONS@\n"), options)
        .replace(QStringLiteral("@SETTINGS@\n"), settings);
}

}  // namespace lumirra
