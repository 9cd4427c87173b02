#include "app/profile/ProfileController.h"

#include <QFileInfo>

#include "app/dialogs/Dialogs.h"
#include "project/Project.h"
#include "project/edits/SettingEdits.h"
#include "settings/ProfileText.h"

namespace lumirra {
namespace {

constexpr auto kExtension = QLatin1String("lmr");

/// The file's name without its last four characters, ".lmr".
QString TitleOf(const QString& path) {
    return QStringLiteral("Lumirra - ") + QFileInfo(path).fileName().chopped(4);
}

}  // namespace

ProfileController::ProfileController(Project& project, Dialogs& dialogs)
    : project_(project), dialogs_(dialogs) {}

void ProfileController::Save() {
    if (!project_.State().IsModified()) {
        return;
    }
    const QString path = project_.State().identity.currentProfilePath;
    path.isEmpty() ? SaveAs() : Write(path);
}

void ProfileController::SaveAs() {
    const std::optional<QString> path = dialogs_.SaveFile(
        {tr("Save Profile"), tr("Lumirra profiles"), kExtension, QStringLiteral("profile.lmr")});
    if (path) {
        project_.RememberProfile(*path);
        Write(*path);
    }
}

void ProfileController::Write(const QString& path) {
    const Settings& settings = project_.State().settings;
    const Outcome<Done> saved = SaveProfile({settings.values, settings.unknown}, path);
    if (!saved) {
        dialogs_.Report(saved.failure().message);
        return;
    }
    project_.MarkSaved(path, TitleOf(path));
}

void ProfileController::Load() {
    if (project_.State().IsModified() &&
        !dialogs_.Ask(tr("You have unsaved changes that will be lost. Continue?"))) {
        return;
    }
    const std::optional<QStringList> chosen =
        dialogs_.OpenFiles({tr("Load Profile"), {tr("Lumirra profiles (*.[lL][mM][rR])")}, false});
    if (!chosen || chosen->isEmpty()) {
        return;
    }
    const QString& path = chosen->first();
    const Outcome<Profile> loaded = LoadProfile(path);
    if (!loaded) {
        project_.RememberProfile(path);
        dialogs_.Report(loaded.failure().message);
        return;
    }
    project_.Apply(edits::LoadSettings(project_.State(), *loaded, path, TitleOf(path)));
}

}  // namespace lumirra
