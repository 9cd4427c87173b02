#include "app/window/HelpPages.h"

#include <QCoreApplication>
#include <QDir>
#include <QMessageBox>

namespace lumirra {
namespace {

/// A configured address, else a page of those installed with the program.
QUrl HelpAddress(const char* configured, const QString& page) {
    QUrl address(QString::fromUtf8(configured));
    if (!address.isEmpty()) {
        return address;
    }
    const QDir program(QCoreApplication::applicationDirPath());
    const QString path = program.filePath(QStringLiteral("../share/lumirra/help/") + page);
    return QFile::exists(path) ? QUrl::fromLocalFile(QDir::cleanPath(path)) : QUrl();
}

QString Translated(const char* text) {
    return QCoreApplication::translate("lumirra::HelpPages", text);
}

void ShowText(QWidget& parent, const QString& title, const QString& html) {
    QMessageBox box(QMessageBox::NoIcon, title, html, QMessageBox::Close, &parent);
    box.setTextFormat(Qt::RichText);
    box.setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    box.exec();
}

}  // namespace

QUrl VideoHelpAddress() {
    return HelpAddress(LUMIRRA_VIDEO_HELP_ADDRESS, QStringLiteral("from-a-video.html"));
}

QUrl PicturesHelpAddress() {
    return HelpAddress(LUMIRRA_PICTURES_HELP_ADDRESS, QStringLiteral("from-pictures.html"));
}

QUrl StoreAddress() {
    return QUrl(QString::fromUtf8(LUMIRRA_STORE_ADDRESS));
}

void ShowAbout(QWidget& parent) {
    const QString text =
        Translated(
            "<h3>Lumirra %1</h3>"
            "<p>Turns a video, or a set of pictures, into an animated GIF.</p>"
            "<p>Free software under the GNU General Public License, version 3 or later.</p>"
            "<p>It is built on:</p>"
            "<table cellspacing='4'>"
            "<tr><td>Qt %2</td><td>GNU LGPL 3</td></tr>"
            "<tr><td>FFmpeg's libraries</td><td>GNU LGPL 2.1 or later, GNU GPL 2 or later</td></tr>"
            "<tr><td>Highway</td><td>Apache 2.0</td></tr>"
            "<tr><td>libspng</td><td>BSD 2-Clause</td></tr>"
            "</table>")
            .arg(QCoreApplication::applicationVersion(), QString::fromLatin1(qVersion()));
    ShowText(parent, Translated("About Lumirra"), text);
}

std::vector<ShortcutRow> ShortcutRows() {
    return {{"Space", "Play or stop the video"},
            {"Space, Enter", "On the GIF: play or stop it"},
            {"I, O", "Mark the position as Start or End"},
            {", and .", "One picture back or on"},
            {"Up, Down", "Select a frame in the list"},
            {"Ctrl+Space", "Select one frame more, or one less"},
            {"Shift+Up, Shift+Down", "Select a range of frames"},
            {"Ctrl+A, Escape", "Select all frames, or none; Escape cancels a job on frames"},
            {"Ctrl+X, Ctrl+C, Ctrl+V", "Cut, copy, paste frames"},
            {"Ctrl+D", "Duplicate the selected frames"},
            {"Ctrl+Shift+Up, Ctrl+Shift+Down", "Move the selected frames"},
            {"Ctrl+R, Ctrl+B", "Reverse frames, or append them backwards"},
            {"Ctrl+T, Ctrl+Shift+T", "Type the frames' delay, or change their speed"},
            {"Ctrl+K", "Keep every n-th frame"},
            {"Ctrl+Shift+D", "Remove near-duplicates"},
            {"Ctrl+Shift+F, Ctrl+Shift+E", "Find a loop, or fade the end into the start"},
            {"F5", "Render frames again with the present look"},
            {"Ctrl+F, Ctrl+J", "Show the frame, or its place in the source"},
            {"Delete", "Remove the selected frames from the list"},
            {"Ctrl+Shift+Del", "Remove all frames"},
            {"Ctrl+Z, Ctrl+Shift+Z", "Undo, redo"},
            {"Ctrl+N", "New project"},
            {"Ctrl+O", "Open a video"},
            {"Ctrl+Shift+O", "Open pictures"},
            {"Ctrl+Shift+N", "Reopen the last session"},
            {"Ctrl+L", "Load a profile"},
            {"Ctrl+S, Ctrl+Shift+S", "Save the profile, or save it under another name"},
            {"Ctrl+G", "Generate the GIF"},
            {"Ctrl+P, Ctrl+Shift+P", "Play or stop the GIF, or play it again"},
            {"Ctrl+Shift+W", "Make the GIF as wide as is offered"},
            {"Ctrl+E, Ctrl+Shift+C", "Save the GIF, or copy it"},
            {"Ctrl++, Ctrl+-, Ctrl+0", "Zoom in, out, fit"},
            {"F1", "How to make a GIF from a video"},
            {"Ctrl+Q", "Quit"}};
}

void ShowShortcuts(QWidget& parent) {
    QString table;
    for (const ShortcutRow& row : ShortcutRows()) {
        table += QStringLiteral("<tr><td><b>%1</b></td><td>%2</td></tr>")
                     .arg(QString::fromLatin1(row.keys), Translated(row.what));
    }
    ShowText(parent, Translated("Keyboard Shortcuts"),
             QStringLiteral("<table cellspacing='6'>%1</table>").arg(table));
}

}  // namespace lumirra
