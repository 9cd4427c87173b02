#include "app/gif/SaveController.h"

#include <QFileInfo>
#include <QSettings>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/session/FileCommands.h"
#include "imaging/files/FileName.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

constexpr auto kExtension = QLatin1String("gif");
constexpr auto kShowRateMessage = "ShowRateMessage";
constexpr auto kMayAsk = "Yes";
constexpr auto kNeverAsk = "No";

/// In one line, with the file's name for its path.
void ShowSaveFailure(Failure failure, QLabel& line) {
    constexpr int kWidest = 400;  // pixels
    failure.message.replace(ReadableName(failure.file),
                            ReadableName(QFileInfo(failure.file).fileName()));
    line.setText(line.fontMetrics().elidedText(failure.message, Qt::ElideMiddle, kWidest));
}

void KeepRateChoice(const char* choice) {
    QSettings settings;
    settings.setValue(QString::fromLatin1(kShowRateMessage), QString::fromLatin1(choice));
    settings.sync();
}

}  // namespace

QString ProposedGifName() {
    return QStringLiteral("videoGif.gif");
}

SaveController::SaveController(Dialogs& dialogs, Ui::MainWindow& ui, QString previewFile,
                               QUrl store)
    : dialogs_(dialogs), ui_(ui), previewFile_(std::move(previewFile)), store_(std::move(store)) {}

void SaveController::SaveGif() {
    if (!ui_.gifPreview->HasPictureObject()) {
        dialogs_.Report(tr("Please generate a GIF first."));
        return;
    }
    const std::optional<QString> chosen =
        dialogs_.SaveFile({tr("Save GIF"), tr("GIF pictures"), kExtension, ProposedGifName()});
    if (!chosen || chosen->isEmpty()) {
        return;
    }
    TellIfMissing(*chosen);
    if (const auto saved = SaveCopy(previewFile_, *chosen); !saved) {
        ShowSaveFailure(saved.failure(), *ui_.labelGifInfo);
        return;
    }
    dialogs_.Report(tr("Gif saved successfully."));
    AskForRating();
}

/// Not after the first GIF that this user saved, at most once in a run, and never again once there
/// was an answer; nor when there is no place to rate it.
void SaveController::AskForRating() {
    const QSettings settings;
    const QString key = QString::fromLatin1(kShowRateMessage);
    if (!settings.contains(key)) {
        KeepRateChoice(kMayAsk);
        return;
    }
    if (settings.value(key).toString() != QLatin1String(kMayAsk) || rateMessageShown_ ||
        store_.isEmpty()) {
        return;
    }
    const Dialogs::Answer answer = dialogs_.ShowAlert(
        tr("If you enjoy using Lumirra, would you mind taking a moment to rate it? Thanks for "
           "your support!"),
        {tr("Yes, Rate Lumirra"), tr("Remind me later"), tr("No, Thanks")});
    rateMessageShown_ = true;
    if (answer == Dialogs::FirstButton) {
        dialogs_.OpenAddress(store_);
    }
    if (answer != Dialogs::SecondButton) {
        KeepRateChoice(kNeverAsk);
    }
}

}  // namespace lumirra
