#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QSplitter>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <algorithm>

#include "app/actions/Command.h"
#include "app/dialogs/QtDialogs.h"
#include "app/window/HelpPages.h"
#include "app/window/MainWindow.h"
#include "settings/Control.h"
#include "views/Theme.h"
#include "views/controls/PopUp.h"
#include "views/controls/RangeControl.h"

namespace lumirra {
namespace {

struct Window {
    Theme theme{*qApp};
    MainWindow window{theme};

    QList<QWidget*> Outlets() const {
        QList<QWidget*> outlets;
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            if (!widget->accessibleDescription().isEmpty() &&
                widget->accessibleDescription() == widget->objectName()) {
                outlets.append(widget);
            }
        }
        return outlets;
    }
};

TEST(MainWindow, EverySettingHasItsControlWithRangeNameAndItems) {
    Window shown;
    for (const ControlRow& row : ControlTable()) {
        auto* widget = shown.window.findChild<QWidget*>(row.name);
        ASSERT_NE(widget, nullptr) << row.name.data();
        EXPECT_EQ(widget->accessibleDescription(), row.name);
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << row.name.data();
        EXPECT_FALSE(widget->toolTip().isEmpty()) << row.name.data();
        if (auto* range = qobject_cast<RangeControl*>(widget)) {
            EXPECT_EQ(range->minimum(), row.minimum) << row.name.data();
            EXPECT_EQ(range->maximum(), row.maximum) << row.name.data();
            range->setValue(row.initial);
            EXPECT_FLOAT_EQ(range->value(), static_cast<float>(row.initial));
        }
        if (const auto* popUp = qobject_cast<PopUp*>(widget)) {
            EXPECT_EQ(popUp->count(), PopUpItems(row.control).size()) << row.name.data();
        }
    }
}

TEST(MainWindow, CommandsAndViewsAreThereAndCanBeNamed) {
    Window shown;
    int buttons = 0;
    for (const CommandRow& row : CommandTable()) {
        EXPECT_TRUE(row.action == nullptr ||
                    shown.window.findChild<QAction*>(QLatin1String(row.action)) != nullptr)
            << row.action;
        if (row.button == nullptr) {
            continue;
        }
        const char* name = row.button;
        ++buttons;
        auto* button = shown.window.findChild<QAbstractButton*>(QLatin1String(name));
        ASSERT_NE(button, nullptr) << name;
        EXPECT_FALSE(button->accessibleName().isEmpty()) << name;
        EXPECT_FALSE(button->toolTip().isEmpty()) << name;
        EXPECT_TRUE(!button->text().isEmpty() || !button->icon().isNull()) << name;
        EXPECT_NE(button->focusPolicy(), Qt::NoFocus) << name;
    }
    EXPECT_GE(buttons, 27);
    for (const char* name :
         {"labelVideoPositionTime", "labelStartTime", "labelEndTime", "labelImageNumber"}) {
        auto* label = shown.window.findChild<QLabel*>(QLatin1String(name));
        ASSERT_NE(label, nullptr) << name;
        EXPECT_TRUE(label->accessibleName().isEmpty()) << "its text is what is read out: " << name;
    }
    EXPECT_GE(shown.Outlets().size(), 89);
}

TEST(MainWindow, NothingIsClippedAtTheSmallestSizes) {
    Window shown;
    shown.window.resize(1180, 720);
    shown.window.show();
    EXPECT_LE(shown.window.minimumSizeHint().width(), 1180);
    EXPECT_EQ(shown.window.size(), QSize(1180, 720));
    auto* tabs = shown.window.findChild<QTabWidget*>(QStringLiteral("tabViewSettings"));
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        QApplication::processEvents();
        for (QWidget* outlet : shown.Outlets()) {
            const auto* button = qobject_cast<QAbstractButton*>(outlet);
            if (outlet->isVisible() && button != nullptr) {
                EXPECT_GE(outlet->width(), outlet->minimumSizeHint().width())
                    << outlet->objectName().toStdString();
            }
        }
    }
}

TEST(MainWindow, ThemesChangeTheColorsOfTheWholeWindow) {
    Window shown;
    shown.window.resize(1180, 720);
    shown.window.show();
    shown.theme.SetChoice(ThemeChoice::Dark);
    QApplication::processEvents();
    EXPECT_LT(shown.window.grab().toImage().pixelColor(3, 300).lightness(), 70);
    shown.theme.SetChoice(ThemeChoice::Light);
    QApplication::processEvents();
    EXPECT_GT(shown.window.grab().toImage().pixelColor(3, 300).lightness(), 200);
}

TEST(MainWindow, RemembersItsSplitters) {
    int width = 0;
    {
        Window shown;
        shown.window.show();
        auto* splitter = shown.window.findChild<QSplitter*>(QStringLiteral("splitterMain"));
        splitter->setSizes({240, 600, 440});
        width = splitter->sizes().at(2);
        shown.window.SaveLayout();
    }
    Window again;
    again.window.show();
    EXPECT_NEAR(again.window.findChild<QSplitter*>(QStringLiteral("splitterMain"))->sizes().at(2),
                width, 2);
}

TEST(MainWindow, ThePageOfShortcutsNamesTheKeysOfAllCommands) {
    Window shown;
    QStringList named;
    for (const ShortcutRow& row : ShortcutRows()) {
        named << QString::fromLatin1(row.keys).split(QStringLiteral(", "));
    }
    int found = 0;
    for (const QAction* action : shown.window.findChildren<QAction*>()) {
        const QString keys = action->shortcut().toString(QKeySequence::PortableText);
        if (!keys.isEmpty() && action->objectName() != QLatin1String("actionKeyboardShortcuts")) {
            EXPECT_EQ(named.count(keys), 1) << qPrintable(keys);
            ++found;
        }
    }
    const auto menuKeys = std::count_if(named.cbegin(), named.cend(), [](const QString& keys) {
        return (keys.startsWith(QStringLiteral("Ctrl+")) && keys != QLatin1String("Ctrl+Space")) ||
               keys.startsWith(QLatin1Char('F'));
    });
    EXPECT_EQ(found, menuKeys) << "no key is promised that no command has";
}

TEST(Alerts, ButtonsStandInTheOrderGivenAndEscapeRefuses) {
    Window shown;
    shown.window.show();
    const QStringList texts{QStringLiteral("Rate it now"), QStringLiteral("Later"),
                            QStringLiteral("Never")};
    QStringList seen;
    QTimer::singleShot(50, qApp, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        QList<QAbstractButton*> buttons = box->buttons();
        std::sort(
            buttons.begin(), buttons.end(),
            [](const QAbstractButton* a, const QAbstractButton* b) { return a->x() < b->x(); });
        for (const QAbstractButton* button : buttons) {
            seen << button->text();
        }
        QTest::keyClick(box, Qt::Key_Escape);
    });
    EXPECT_EQ(QtDialogs().ShowAlert(QStringLiteral("?"), texts), Dialogs::SecondButton);
    EXPECT_EQ(seen, texts);
}

}  // namespace
}  // namespace lumirra
