#include "cli/papers/Completions.h"

#include <QStringList>

#include "cli/OptionTable.h"
#include "settings/Control.h"

namespace lumirra {
namespace {

/// The words that an option or a setting chooses from; empty when it takes anything.
QStringList Words(const OptionRow& row) {
    return QString::fromLatin1(row.words).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QStringList Words(const ControlRow& row) {
    switch (row.kind) {
        case ControlKind::Check:
        case ControlKind::Radio:
            return {QStringLiteral("0"), QStringLiteral("1")};
        case ControlKind::PopUp:
            return PopUpItems(row.control);
        default:
            return {};
    }
}

/// In single quotes, as all three shells read them; none of our texts holds a line break.
QString Quoted(QString text) {
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QStringLiteral("'\\''")) +
           QLatin1Char('\'');
}

QString Quoted(const QStringList& words) {
    QStringList quoted;
    for (const QString& word : words) {
        quoted << Quoted(word);
    }
    return quoted.join(QLatin1Char(' '));
}

/// The help's first clause.
QString Brief(const OptionRow& row) {
    QString text = QString::fromLatin1(row.help);
    for (const char* const end : {";", ":", ". ", " ("}) {
        text = text.section(QLatin1String(end), 0, 0);
    }
    return text;
}

/// "-o" and "--output", or the long one alone.
QStringList Spellings(const OptionRow& row) {
    QStringList names;
    if (row.letter != 0) {
        names << QStringLiteral("-%1").arg(QLatin1Char(row.letter));
    }
    return names << QStringLiteral("--%1").arg(QLatin1String(row.name));
}

/// What bash runs for the value of such an option; the files of the shell's own when empty.
QString BashAction(const OptionRow& row) {
    switch (row.kind) {
        case OptionValue::Gif:
            return QStringLiteral("_lumirra_cli_files gif");
        case OptionValue::Profile:
            return QStringLiteral("_lumirra_cli_files lmr");
        case OptionValue::Folder:
            return QStringLiteral("compopt -o dirnames +o default");
        case OptionValue::Words:
            return QStringLiteral("_lumirra_cli_words ") + Quoted(Words(row));
        case OptionValue::Setting:
            return QStringLiteral("compopt -o nospace; _lumirra_cli_words $settings");
        case OptionValue::Other:
            return QStringLiteral("compopt +o default");
        default:
            return QStringLiteral(":");
    }
}

QString ZshAction(const OptionRow& row) {
    switch (row.kind) {
        case OptionValue::Gif:
            return QStringLiteral("_files -g \"*.gif(-.)\"");
        case OptionValue::Profile:
            return QStringLiteral("_files -g \"*.lmr(-.)\"");
        case OptionValue::File:
            return QStringLiteral("_files");
        case OptionValue::Folder:
            return QStringLiteral("_files -/");
        case OptionValue::Words:
            return QStringLiteral("(%1)").arg(QLatin1String(row.words));
        case OptionValue::Setting:
            return QStringLiteral("_lumirra_cli_setting");
        default:
            return QStringLiteral(" ");
    }
}

/// An argument rule's texts may not hold what ends them.
QString ZshText(QString text) {
    for (const QChar special : {QLatin1Char('['), QLatin1Char(']'), QLatin1Char(':')}) {
        text.replace(special, QStringLiteral("\\%1").arg(special));
    }
    return text;
}

/// '(-o --output)'{-o,--output=}'[what it does]:FILE:_files', as _arguments takes it; the one that
/// may be given several times begins with '*'.
QString ZshSpecification(const OptionRow& row) {
    QStringList spellings = Spellings(row);
    const bool several = row.kind == OptionValue::Setting;
    const QString before = several ? QStringLiteral("*")
                                   : QStringLiteral("(%1)").arg(spellings.join(QLatin1Char(' ')));
    QString after = QStringLiteral("[%1]").arg(ZshText(Brief(row)));
    if (row.kind != OptionValue::None) {
        spellings.back() += QLatin1Char('=');  // also as the next word
        after += QStringLiteral(":%1:%2").arg(QLatin1String(row.value), ZshAction(row));
    }
    const QString names = spellings.size() == 1
                              ? spellings.front()
                              : QStringLiteral("{%1}").arg(spellings.join(QLatin1Char(',')));
    return Quoted(before) + names + Quoted(after);
}

QString FishAction(const OptionRow& row) {
    switch (row.kind) {
        case OptionValue::None:
            return QString();
        case OptionValue::Gif:
        case OptionValue::File:
            return QStringLiteral(" -r -F");
        case OptionValue::Profile:
            return QStringLiteral(" -x -a '(__fish_complete_suffix .lmr)'");
        case OptionValue::Folder:
            return QStringLiteral(" -x -a '(__fish_complete_directories)'");
        case OptionValue::Words:
            return QStringLiteral(" -x -a ") + Quoted(QString::fromLatin1(row.words));
        case OptionValue::Setting:
            return QStringLiteral(" -x -a '(__lumirra_cli_settings)'");
        case OptionValue::Other:
            break;
    }
    return QStringLiteral(" -x");
}

struct BashMarks {
    QStringList options;
    QStringList settings;
    QString cases;
};

BashMarks ForBash() {
    BashMarks marks;
    const auto add = [&marks](const QString& names, const QString& action) {
        marks.cases += QStringLiteral("        %1) %2; return ;;\n").arg(names, action);
    };
    for (const OptionRow& row : OptionTable()) {
        marks.options << QStringLiteral("--%1").arg(QLatin1String(row.name));
        if (row.kind != OptionValue::None) {
            add(Spellings(row).join(QLatin1Char('|')), BashAction(row));
        }
    }
    for (const ControlRow& row : ControlTable()) {
        marks.settings << row.name + QLatin1Char('=');
        const QStringList words = Words(row);
        if (!words.isEmpty()) {
            add(row.name, QStringLiteral("_lumirra_cli_words ") + Quoted(words));
        }
    }
    return marks;
}

struct ZshMarks {
    QString options;
    QString settings;
    QString cases;
};

ZshMarks ForZsh() {
    ZshMarks marks;
    for (const OptionRow& row : OptionTable()) {
        marks.options += QStringLiteral("    %1 \\\n").arg(ZshSpecification(row));
    }
    for (const ControlRow& row : ControlTable()) {
        const QString described = row.name + QLatin1Char(':') + QString::fromUtf8(row.tooltip);
        marks.settings += QStringLiteral("        %1\n").arg(Quoted(described));
        const QStringList words = Words(row);
        if (!words.isEmpty()) {
            marks.cases +=
                QStringLiteral("            %1) values=(%2) ;;\n").arg(row.name, Quoted(words));
        }
    }
    return marks;
}

QString FishOptions() {
    QString text;
    for (const OptionRow& row : OptionTable()) {
        text += QStringLiteral("complete -c lumirra-cli");
        if (row.letter != 0) {
            text += QStringLiteral(" -s %1").arg(QLatin1Char(row.letter));
        }
        text += QStringLiteral(" -l %1%2 -d %3\n")
                    .arg(QLatin1String(row.name), FishAction(row), Quoted(Brief(row)));
    }
    return text;
}

QString FishSettings() {
    QString text;
    for (const ControlRow& row : ControlTable()) {
        QStringList words = Words(row);
        if (words.isEmpty()) {
            words << QString();
        }
        for (const QString& word : words) {
            text += QStringLiteral("    printf '%s\\t%s\\n' %1 %2\n")
                        .arg(Quoted(row.name + QLatin1Char('=') + word),
                             Quoted(QString::fromUtf8(row.tooltip)));
        }
    }
    return text;
}

}  // namespace

void FillCompletions(QString& page) {
    const BashMarks bash = ForBash();
    const ZshMarks zsh = ForZsh();
    const QLatin1Char blank(' ');
    page.replace(QStringLiteral("@BASH_CASES@\n"), bash.cases)
        .replace(QStringLiteral("@BASH_OPTIONS@"), bash.options.join(blank))
        .replace(QStringLiteral("@BASH_SETTINGS@"), bash.settings.join(blank))
        .replace(QStringLiteral("@ZSH_CASES@\n"), zsh.cases)
        .replace(QStringLiteral("@ZSH_OPTIONS@\n"), zsh.options)
        .replace(QStringLiteral("@ZSH_SETTINGS@\n"), zsh.settings)
        .replace(QStringLiteral("@FISH_OPTIONS@\n"), FishOptions())
        .replace(QStringLiteral("@FISH_SETTINGS@\n"), FishSettings());
}

}  // namespace lumirra
