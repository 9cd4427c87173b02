#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include "views/Theme.h"
#include "views/controls/RangeControl.h"
#include "views/strip/AccessibleFrames.h"

// Widgets need the whole application, dressed as the program is; no display is used, and no
// user's settings are touched.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("lumirra-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("lumirra-tests"));
    lumirra::InstallAccessibleRangeControls();
    lumirra::InstallAccessibleFrames();
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    const lumirra::Theme theme(application);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
