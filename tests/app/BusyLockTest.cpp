#include <QTabWidget>
#include <QTest>
#include <map>

#include "WindowFixture.h"
#include "settings/Control.h"

namespace lumirra {
namespace {

/// The names of all widgets in the order in which they were disabled.
class DisableOrder : public QObject {
  public:
    QStringList names;
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* widget = qobject_cast<QWidget*>(watched);
        const bool disabled =
            event->type() == QEvent::EnabledChange && widget != nullptr && !widget->isEnabled();
        if (disabled && !widget->accessibleDescription().isEmpty()) {
            names.append(widget->objectName());
        }
        return false;
    }
};

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
    DisableOrder order;
    qApp->installEventFilter(&order);
    window.DisableAllControls();
    qApp->removeEventFilter(&order);

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
    // Disabled already: the two that move a selected frame.
    EXPECT_EQ(order.names.mid(0, 4).join(QLatin1Char(' ')).toStdString(),
              "buttonSelectVideo buttonSelectImage buttonRemoveSelectedFrame "
              "buttonRemoveAllFrames");
    EXPECT_LT(order.names.indexOf(QStringLiteral("sliderCustomColorCount")),
              order.names.indexOf(QStringLiteral("buttonSaveGif")));
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
