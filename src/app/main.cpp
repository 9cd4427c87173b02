#include <QApplication>
#include <QCommandLineParser>
#include <iostream>

#include "app/FontsAhead.h"
#include "app/QtDialogs.h"
#include "app/ViewController.h"
#include "imaging/WorkingMemory.h"
#include "sources/TemporaryFolder.h"
#include "views/Theme.h"
#include "views/controls/RangeControl.h"
#include "views/strip/AccessibleFrames.h"

int main(int argc, char** argv) {
    using namespace lumirra;
    KeepWorkingMemory();
    // Before the application exists: it chooses the player's backend once.
    qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    std::jthread fonts = ReadFontsAhead();
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("lumirra"));
    QCoreApplication::setApplicationName(QStringLiteral("lumirra"));
    QCoreApplication::setApplicationVersion(QStringLiteral(LUMIRRA_VERSION));
    QGuiApplication::setApplicationDisplayName(QString());
    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QStringLiteral("Makes animated GIFs from videos and pictures."));
    arguments.addHelpOption();
    arguments.addVersionOption();
    arguments.addPositionalArgument(QStringLiteral("files"),
                                    QStringLiteral("A video, or any number of pictures."),
                                    QStringLiteral("[files...]"));
    arguments.process(application);
    InstallAccessibleRangeControls();
    InstallAccessibleFrames();

    QtDialogs dialogs;
    const Outcome<TemporaryFolder> folder = TemporaryFolder::Make();
    if (!folder) {
        dialogs.Report(folder.failure().message);
        return 1;
    }
    Theme theme(application);
    fonts.join();
    ViewController window(theme, dialogs, folder->Path());
    window.show();
    window.OpenFiles(arguments.positionalArguments());
    return QApplication::exec();
}
