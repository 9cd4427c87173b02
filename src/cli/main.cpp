#include <QGuiApplication>
#include <cstdio>
#include <new>

#include "cli/Conversion.h"
#include "cli/SourceLook.h"
#include "cli/StopSignals.h"
#include "imaging/WorkingMemory.h"
#include "settings/Assignment.h"

namespace lumirra {
namespace {

/// The toolkit's own remarks are no help to the user; what is wrong is said by the results.
void DropRemarks(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(text));
    }
}

ExitCode Perform(const Options& options, const std::stop_token& stop, Console& console) {
    switch (options.action) {
        case Options::Action::Help:
            console.Print(HelpText());
            return ExitCode::Success;
        case Options::Action::Version:
            console.Print(QStringLiteral("lumirra-cli " LUMIRRA_VERSION "\n"));
            return ExitCode::Success;
        case Options::Action::ListSettings:
            console.Print(ListSettings());
            return ExitCode::Success;
        case Options::Action::Info: {
            const auto text = DescribeSource(options.infoSource, options.json);
            if (!text) {
                console.Error(MessageOf(text.failure()));
                return ExitCode::Failed;
            }
            console.Print(*text);
            return ExitCode::Success;
        }
        case Options::Action::MakeGif:
            break;
    }
    return Convert(options, stop, console);
}

ExitCode RunWith(const QStringList& arguments, const std::stop_token& stop) {
    const auto options = ParseOptions(arguments);
    if (!options) {
        Console console;
        console.Error(options.failure().message + QStringLiteral(" (See --help.)"));
        return ExitCode::Usage;
    }
    Console console(options->quiet);
    try {
        return Perform(*options, stop, console);
    } catch (const std::bad_alloc&) {
        console.Error(QStringLiteral("There is not enough memory."));
        return ExitCode::Failed;
    }
}

}  // namespace
}  // namespace lumirra

int main(int argc, char** argv) {
    lumirra::KeepWorkingMemory();
    const lumirra::StopSignals signals;
    qInstallMessageHandler(lumirra::DropRemarks);
    // Fonts need the application object, a display is never used.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The object would take words of its own out of our arguments.
    int nameOnly = 1;
    const QGuiApplication application(nameOnly, argv);
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
    }
    return static_cast<int>(lumirra::RunWith(arguments, signals.Token()));
}
