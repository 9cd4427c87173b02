#include <QFileInfo>
#include <QSettings>

#include "app/FileCommands.h"
#include "app/HelpPages.h"
#include "app/ViewController.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

constexpr auto kExtension = QLatin1String("gif");
constexpr auto kShowRateMessage = "ShowRateMessage";
constexpr auto kMayAsk = "Yes";
constexpr auto kNeverAsk = "No";

void KeepRateChoice(const char* choice) {
    QSettings settings;
    settings.setValue(QString::fromLatin1(kShowRateMessage), QString::fromLatin1(choice));
    settings.sync();
}

}  // namespace

void ViewController::OnSaveGif() {
    if (!ui_.gifPreview->HasPictureObject()) {
        dialogs_.Report(tr("Please generate a GIF first."));
        return;
    }
    const std::optional<QString> chosen = dialogs_.SaveFile(
        {tr("Save GIF"), tr("GIF pictures"), kExtension, QStringLiteral("videoGif.gif")});
    if (!chosen || chosen->isEmpty()) {
        return;
    }
    if (!QFileInfo::exists(*chosen)) {
        RemoveFile(*chosen);  // says so; what is there is replaced by the copy
    }
    if (!SaveCopy(PreviewFile(), *chosen)) {
        return;
    }
    dialogs_.Report(tr("Gif saved successfully."));
    AskForRating();
}

/// Not after the first GIF that this user saved, at most once in a run, and never again once there
/// was an answer.
void ViewController::AskForRating() {
    const QSettings settings;
    const QString key = QString::fromLatin1(kShowRateMessage);
    if (!settings.contains(key)) {
        KeepRateChoice(kMayAsk);
        return;
    }
    if (settings.value(key).toString() != QLatin1String(kMayAsk) || state_.rateMessageShown) {
        return;
    }
    const Dialogs::Answer answer = dialogs_.ShowAlert(
        tr("If you enjoy using Lumirra, would you mind taking a moment to rate it? Thanks for "
           "your support!"),
        {tr("Yes, Rate Lumirra"), tr("Remind me later"), tr("No, Thanks")});
    state_.rateMessageShown = true;
    if (answer == Dialogs::FirstButton) {
        dialogs_.OpenAddress(StoreAddress());
    }
    if (answer != Dialogs::SecondButton) {
        KeepRateChoice(kNeverAsk);
    }
}

}  // namespace lumirra
