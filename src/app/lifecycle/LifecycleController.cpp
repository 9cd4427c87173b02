#include "app/lifecycle/LifecycleController.h"

#include "app/dialogs/Dialogs.h"
#include "project/Project.h"
#include "project/edits/SettingEdits.h"

namespace lumirra {

LifecycleController::LifecycleController(Project& project, Dialogs& dialogs)
    : project_(project), dialogs_(dialogs) {}

void LifecycleController::New() {
    if (project_.State().IsModified() &&
        !dialogs_.Ask(tr("You have unsaved changes that will be lost. Continue?"))) {
        return;
    }
    Q_EMIT Leaving();
    project_.Apply(edits::NewProject(project_.State()));
}

bool LifecycleController::MayClose() {
    if (project_.State().IsModified() &&
        !dialogs_.Ask(
            tr("You have unsaved changes that will be lost. Are you sure you want to exit "
               "the application?"))) {
        return false;
    }
    Q_EMIT Leaving();
    return true;
}

}  // namespace lumirra
