#pragma once

#include <QStringList>
#include <optional>

namespace lumirra {

/// What the program was started with.
struct StartArguments {
    enum class Ask { Nothing, Video, Pictures };
    QStringList files;
    Ask ask = Ask::Nothing;  ///< for which files to ask at once
};

/// Answers --help and --version, for which no display is needed: the program's exit code then.
/// Before the application object exists.
std::optional<int> AnswerAtOnce(int& argc, char** argv);

/// What is left of the program's arguments once the application object has taken its own out; ends
/// the program, with a sentence, when they are wrong.
StartArguments ReadStartArguments(int argc, char** argv);

}  // namespace lumirra
