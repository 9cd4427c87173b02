#include <QTabWidget>
#include <QTest>
#include <map>

#include "WindowFixture.h"
#include "settings/Control.h"

namespace lumirra {
namespace {

using BusyLock = WindowTest;

TEST_F(BusyLock, EverythingThatChangesSomethingIsLockedAndComesBackAsItWas) {
    OpenVideo(Media("counter-2997.mov"));
    const auto states = [&] {
        std::map<QString, bool> enabled;
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->objectName() == widget->accessibleDescription()) {
                enabled[widget->objectName()] = widget->isEnabled();
            }
        }
        return enabled;
    };
    const auto before = states();
    window.DisableAllControls();

    for (const ControlRow& row : ControlTable()) {
        EXPECT_FALSE(Enabled(row.name.data())) << row.name.data();
    }
    for (const auto& [name, enabled] : states()) {
        if (name.startsWith(QStringLiteral("button"))) {
            EXPECT_FALSE(enabled) << name.toStdString();
        }
    }
    for (const char* free : {"tabViewSettings", "scrollViewFrames", "gifPreview"}) {
        EXPECT_TRUE(Enabled(free)) << free;
    }
    EXPECT_FALSE(Find<QWidget>("imageViewVideo").acceptDrops());
    EXPECT_FALSE(Find<QWidget>("customViewVideo").acceptDrops());

    window.RefreshControlStates();
    EXPECT_EQ(states(), before);
    EXPECT_TRUE(Find<QWidget>("imageViewVideo").acceptDrops());
}

TEST_F(BusyLock, TheKeyboardGoesBackToWhereItWasAndTypedTextCounts) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    auto& tabs = Find<QTabWidget>("tabViewSettings");
    tabs.setCurrentIndex(tabs.count() - 1);
    auto& delay = Find<QLineEdit>("textFieldFrameDelay");
    delay.setFocus();
    delay.selectAll();
    QTest::keyClicks(&delay, QStringLiteral("0.3"));
    window.DisableAllControls();
    EXPECT_EQ(window.focusWidget(), &window);
    EXPECT_EQ(ValueOf("stepperFrameDelay"), 3.0F) << "accepted as if the field had been left";
    window.RefreshControlStates();
    EXPECT_EQ(window.focusWidget(), &delay);
}

}  // namespace
}  // namespace lumirra
