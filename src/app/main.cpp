#include <QApplication>
#include <QTimer>
#include <optional>
#include <stop_token>

#include "app/StartArguments.h"
#include "app/ViewController.h"
#include "app/dialogs/QtDialogs.h"
#include "app/session/StopRelay.h"
#include "app/window/FontsAhead.h"
#include "imaging/Versions.h"
#include "imaging/WorkingMemory.h"
#include "imaging/process/StandardStreams.h"
#include "imaging/process/StopSignals.h"
#include "imaging/process/SuddenEnd.h"
#include "sources/NoRuntimeFolder.h"
#include "sources/TemporaryFolder.h"
#include "views/Theme.h"
#include "views/controls/RangeControl.h"
#include "views/strip/AccessibleFrames.h"

int main(int argc, char** argv) {
    using namespace lumirra;
    if (const std::optional<int> code = AnswerAtOnce(argc, argv)) {
        return *code;
    }
    EndByOneSentence(true);
    KeepStandardStreams();
    const StopSignals signals;
    KeepWorkingMemory();
    // Before the application exists: it chooses the player's backend once.
    qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    auto noRuntimeFolder = std::make_optional<NoRuntimeFolder>();
    std::jthread fonts = ReadFontsAhead();
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("lumirra"));
    QCoreApplication::setApplicationName(QStringLiteral("lumirra"));
    QCoreApplication::setApplicationVersion(ProgramVersion());
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.lumirra.Lumirra"));
    QGuiApplication::setApplicationDisplayName(QString());
    const StartArguments arguments = ReadStartArguments(argc, argv);
    InstallAccessibleRangeControls();
    InstallAccessibleFrames();

    QtDialogs dialogs;
    const Outcome<TemporaryFolder> folder = TemporaryFolder::Make();
    if (!folder) {
        dialogs.Report(folder.failure().message);
        return 1;
    }
    Theme theme(application);
    if (fonts.joinable()) {
        fonts.join();
    }
    noRuntimeFolder.reset();
    ViewController window(theme, dialogs, folder->Path());
    window.show();
    window.LookForSessions();
    window.OpenFiles(arguments.files);
    QTimer panel;  // a file panel comes once the window stands
    panel.setSingleShot(true);
    if (arguments.ask == StartArguments::Ask::Video) {
        QObject::connect(&panel, &QTimer::timeout, &window, &ViewController::OnSelectVideo);
        panel.start(0);
    } else if (arguments.ask == StartArguments::Ask::Pictures) {
        QObject::connect(&panel, &QTimer::timeout, &window, &ViewController::OnSelectImage);
        panel.start(0);
    }
    // In order, but nobody is asked: who sends a signal does not wait for an answer.
    StopRelay relay;
    QObject::connect(
        &relay, &StopRelay::Asked, qApp, [] { QCoreApplication::exit(1); }, Qt::QueuedConnection);
    const std::stop_callback onSignal(signals.Token(), [&relay] { Q_EMIT relay.Asked(); });
    return QApplication::exec();
}
