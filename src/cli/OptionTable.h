#pragma once

#include <QString>
#include <span>

namespace lumirra {

/// What an option's value is, for those who complete it.
enum class OptionValue { None, File, Gif, Profile, Folder, Words, Setting, Other };

/// One option of the command line. The parser, --help, the man page and the completions of the
/// shells are made from these rows.
// The fields stand in the order in which a row reads.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct OptionRow {
    char letter;        ///< 0 when there is none
    const char* name;   ///< without the dashes
    const char* value;  ///< "FILE"; empty when the option has none
    OptionValue kind;
    const char* words;  ///< of `Words`: apart by blanks
    const char* help;   ///< one sentence or more, without a line break
};

/// All options, in the order of the help text.
std::span<const OptionRow> OptionTable();

/// What --help prints.
QString HelpText();

}  // namespace lumirra
