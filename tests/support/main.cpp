#include <gtest/gtest.h>

#include <QGuiApplication>

// Fonts and picture plug-ins need the application object; no display is used.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
