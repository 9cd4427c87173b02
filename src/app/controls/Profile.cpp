#include <QFileInfo>

#include "app/ViewController.h"
#include "app/controls/ControlWidgets.h"
#include "settings/ProfileText.h"

namespace lumirra {
namespace {

constexpr auto kExtension = QLatin1String("lmr");

/// The file's name without its last four characters, ".lmr".
QString TitleOf(const QString& path) {
    return QStringLiteral("Lumirra - ") + QFileInfo(path).fileName().chopped(4);
}

}  // namespace

/// What stands in a field that was not left yet counts as if it had been.
void ViewController::CommitTyping() {
    if (QWidget* field = focusWidget(); field != nullptr && field != this) {
        setFocus();
        field->setFocus();
    }
}

void ViewController::OnSaveProfile() {
    CommitTyping();
    if (!IsModified()) {
        return;
    }
    if (state_.currentProfilePath.isEmpty()) {
        OnSaveProfileAs();
        return;
    }
    WriteProfile();
}

void ViewController::OnSaveProfileAs() {
    CommitTyping();
    const std::optional<QString> path = dialogs_.SaveFile(
        {tr("Save Profile"), tr("Lumirra profiles"), kExtension, QStringLiteral("profile.lmr")});
    if (path) {
        state_.currentProfilePath = *path;
        WriteProfile();
    }
}

void ViewController::WriteProfile() {
    const Outcome<Done> saved = SaveProfile(Values(), state_.currentProfilePath);
    if (!saved) {
        dialogs_.Report(saved.failure().message);
        return;
    }
    setWindowTitle(TitleOf(state_.currentProfilePath));
}

void ViewController::OnLoadProfile() {
    if (!MayLoseChanges(tr("You have unsaved changes that will be lost. Continue?"))) {
        return;
    }
    const std::optional<QStringList> chosen =
        dialogs_.OpenFiles({tr("Load Profile"), tr("Lumirra profiles"), {kExtension}, false});
    if (!chosen || chosen->isEmpty()) {
        return;
    }
    state_.currentProfilePath = chosen->first();
    const Outcome<ControlValues> loaded = LoadProfile(state_.currentProfilePath);
    if (!loaded) {
        dialogs_.Report(loaded.failure().message);
        return;
    }
    controls_->Write(*loaded);
    StoreTextFieldsValues();
    setWindowTitle(TitleOf(state_.currentProfilePath));
    UpdateVideoPreview();
    UpdateCropResizeGeometry();
    RefreshSizeEstimate();
}

}  // namespace lumirra
