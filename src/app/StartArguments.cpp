#include "app/StartArguments.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>
#include <string_view>

#include "imaging/files/FileName.h"
#include "sources/LibrariesInUse.h"

namespace lumirra {
namespace {

void AddOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        QStringLiteral("Makes animated GIFs from videos and pictures."));
    parser.addHelpOption();
    parser.addOption({{QStringLiteral("v"), QStringLiteral("version")},
                      QStringLiteral("Displays the versions of the program and its libraries.")});
    parser.addOption({QStringLiteral("open-video"), QStringLiteral("Asks for a video at once.")});
    parser.addOption(
        {QStringLiteral("open-pictures"), QStringLiteral("Asks for pictures at once.")});
    parser.addPositionalArgument(QStringLiteral("files"),
                                 QStringLiteral("A video, or any number of pictures."),
                                 QStringLiteral("[files...]"));
}

}  // namespace

std::optional<int> AnswerAtOnce(int& argc, char** argv) {
    bool version = false;
    bool help = false;
    for (int i = 1; i < argc && std::string_view(argv[i]) != "--"; ++i) {
        const std::string_view word(argv[i]);
        version = version || word == "-v" || word == "--version";
        help = help || word == "-h" || word == "--help";
    }
    if (!version && !help) {
        return std::nullopt;
    }
    const QCoreApplication application(argc, argv);
    QString text;
    if (help) {
        QCommandLineParser parser;
        AddOptions(parser);
        text = parser.helpText();
    } else {
        text = VersionText(QStringLiteral("lumirra"));
    }
    const bool printed =
        std::fputs(text.toLocal8Bit().constData(), stdout) >= 0 && std::fflush(stdout) == 0;
    return printed ? 0 : 1;
}

StartArguments ReadStartArguments(int argc, char** argv) {
    QCommandLineParser parser;
    AddOptions(parser);
    QStringList words;
    for (int i = 0; i < argc; ++i) {
        words << FileText(argv[i]);
    }
    parser.process(words);
    StartArguments arguments;
    arguments.files = parser.positionalArguments();
    if (parser.isSet(QStringLiteral("open-video"))) {
        arguments.ask = StartArguments::Ask::Video;
    } else if (parser.isSet(QStringLiteral("open-pictures"))) {
        arguments.ask = StartArguments::Ask::Pictures;
    }
    return arguments;
}

}  // namespace lumirra
