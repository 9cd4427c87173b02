#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include "ScriptedDialogs.h"
#include "app/ViewController.h"
#include "views/Theme.h"
#include "views/controls/RangeControl.h"
#include "views/panel/VideoImageView.h"

namespace lumirra {

/// The frame number drawn into the counter clips: eight blocks in the bottom rows, highest first.
inline int CounterIn(const QImage& picture) {
    int number = 0;
    for (int block = 0; block < 8; ++block) {
        const QColor color =
            picture.pixelColor(picture.width() * (2 * block + 1) / 16, picture.height() * 8 / 9);
        number = number * 2 + (color.lightness() > 127 ? 1 : 0);
    }
    return number;
}

/// A window under the off-screen platform, with scripted dialogs and a folder of its own.
class WindowTest : public testing::Test {
  protected:
    static QString Media(const char* name) {
        return QDir::cleanPath(
            QDir(QStringLiteral(LUMIRRA_MEDIA_DIR)).filePath(QString::fromUtf8(name)));
    }

    template <typename Widget>
    Widget& Find(const char* outlet) {
        auto* widget = window.findChild<Widget*>(QString::fromLatin1(outlet));
        EXPECT_NE(widget, nullptr) << outlet;
        return *widget;
    }
    QWidget& Outlet(const QString& name) { return *window.findChild<QWidget*>(name); }
    QString TextOf(const char* outlet) { return Find<QLabel>(outlet).text(); }
    QString FieldText(const char* outlet) { return Find<QLineEdit>(outlet).text(); }
    float ValueOf(const char* outlet) { return Find<RangeControl>(outlet).value(); }
    bool Enabled(const char* outlet) { return Find<QWidget>(outlet).isEnabled(); }
    bool Shown(const char* outlet) { return !Find<QWidget>(outlet).isHidden(); }

    void Press(const char* outlet) { Find<QAbstractButton>(outlet).click(); }
    void Edit(const char* outlet, double value) { Find<RangeControl>(outlet).EditValue(value); }
    void Type(const char* outlet, const QString& text) {
        auto& field = Find<QLineEdit>(outlet);
        field.setText(text);
        Q_EMIT field.editingFinished();
    }

    /// Lets the window work until the preview is at rest.
    void Settle() {
        QElapsedTimer clock;
        clock.start();
        while (window.State().updating && clock.elapsed() < 30000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        }
        ASSERT_FALSE(window.State().updating);
    }
    QImage Picture() { return Find<VideoImageView>("imageViewVideo").Image(); }

    void OpenVideo(const QString& path) {
        dialogs.files.push_back(QStringList{path});
        Press("buttonSelectVideo");
        Settle();
    }
    void OpenImages(const QStringList& paths) {
        dialogs.files.push_back(paths);
        Press("buttonSelectImage");
        Settle();
    }

    /// As if all that was changed so far had been saved.
    void ForgetChanges() {
        window.CurrentProject().MarkSaved(QString(), QStringLiteral("Lumirra"));
    }

    QTemporaryDir folder;
    ScriptedDialogs dialogs;
    Theme theme{*qApp};
    ViewController window{theme, dialogs, folder.path(),
                          QUrl(QStringLiteral("https://example.org/rate"))};
};

}  // namespace lumirra
