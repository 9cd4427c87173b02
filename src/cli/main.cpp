#include <QGuiApplication>
#include <cerrno>
#include <new>
#include <optional>

#include "cli/Conversion.h"
#include "cli/OptionTable.h"
#include "cli/SourceProbe.h"
#include "imaging/WorkingMemory.h"
#include "imaging/files/FileName.h"
#include "imaging/files/SystemReason.h"
#include "imaging/process/StandardStreams.h"
#include "imaging/process/StopSignals.h"
#include "imaging/process/SuddenEnd.h"
#include "project/presets/Presets.h"
#include "settings/Assignment.h"
#include "sources/LibrariesInUse.h"
#include "sources/NoRuntimeFolder.h"

namespace lumirra {
namespace {

ExitCode Perform(const Options& options, const std::stop_token& stop, Console& console) {
    switch (options.action) {
        case Options::Action::Help:
            console.Print(HelpText());
            return ExitCode::Success;
        case Options::Action::Version:
            console.Print(VersionText(QStringLiteral("lumirra-cli")));
            return ExitCode::Success;
        case Options::Action::ListSettings:
            console.Print(ListSettings());
            return ExitCode::Success;
        case Options::Action::ListPresets: {
            const auto presets = LoadPresets(UserPresetsFile());
            if (!presets) {
                console.Error(MessageOf(presets.failure()));
                return ExitCode::Failed;
            }
            console.Print(ListPresets(*presets));
            return ExitCode::Success;
        }
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

/// What was asked for has to arrive; a reader that went away knows that it has not all.
ExitCode Delivered(ExitCode code, Console& console) {
    const int error = console.OutputError();
    if (error != 0 && error != EPIPE) {
        console.Error(
            QStringLiteral("Standard output cannot be written: %1.").arg(SystemReason(error)));
    }
    return error != 0 && code == ExitCode::Success ? ExitCode::Failed : code;
}

ExitCode RunWith(const QStringList& arguments, StopSignals& signals) {
    const auto options = ParseOptions(arguments);
    if (!options) {
        Console console;
        console.Error(options.failure().message + QStringLiteral(" (See --help.)"));
        return ExitCode::Usage;
    }
    Console console(options->quiet, [&signals] { signals.Poll(); });
    try {
        return Delivered(Perform(*options, signals.Token(), console), console);
    } catch (const std::bad_alloc&) {
        console.Error(QStringLiteral("There is not enough memory."));
        return ExitCode::Failed;
    }
}

}  // namespace
}  // namespace lumirra

int main(int argc, char** argv) {
    // The toolkit's own remarks are no help to the user; what is wrong is said by the results.
    lumirra::EndByOneSentence(false);
    lumirra::KeepStandardStreams();
    lumirra::KeepWorkingMemory();
    lumirra::StopSignals signals;
    // Fonts need the application object, a display is never used.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The object would take words of its own out of our arguments.
    int nameOnly = 1;
    auto noRuntimeFolder = std::make_optional<lumirra::NoRuntimeFolder>();
    const QGuiApplication application(nameOnly, argv);
    noRuntimeFolder.reset();
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments << lumirra::FileText(argv[i]);
    }
    return static_cast<int>(lumirra::RunWith(arguments, signals));
}
