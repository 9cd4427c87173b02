#include "app/controls/SettingsController.h"

#include <utility>

#include "project/Project.h"
#include "views/controls/ValueSlider.h"

namespace lumirra {
namespace {

/// A stepper or a key that repeats, and the wheel, make one step as a drag does.
constexpr qint64 kOneStepMilliseconds = 600;

}  // namespace

SettingsController::SettingsController(Project& project, const QWidget& window)
    : project_(project),
      widgets_(FindSettingWidgets(window),
               [this](Control control, const edits::ControlInput& input) {
                   OnControlEdited(control, input);
               }) {
    widgets_.Show(project.Values());
    connect(&project, &Project::Changed, this, [this](ProjectChanges what) {
        if (what & ProjectChange::Settings) {
            widgets_.Show(project_.Values());
        }
    });
    const QList<ValueSlider*> sliders = window.findChildren<ValueSlider*>();
    for (const ValueSlider* slider : sliders) {
        connect(slider, &ValueSlider::DragFinished, this, [this] {
            lastEdited_.reset();
            project_.EndOfDrag();
        });
    }
}

int SettingsController::MergeKey(Control control, bool held) {
    const ControlKind kind = RowOf(control).kind;
    const bool gradual = kind == ControlKind::Slider || kind == ControlKind::Stepper;
    const bool follows = lastEdited_ == control && sinceEdit_.isValid() &&
                         sinceEdit_.elapsed() < kOneStepMilliseconds;
    if (!follows && !(held && lastEdited_ == control)) {
        project_.EndOfDrag();
    }
    lastEdited_ = control;
    sinceEdit_.start();
    return gradual ? static_cast<int>(control) + 1 : 0;
}

void SettingsController::OnControlEdited(Control control, const edits::ControlInput& input) {
    Edit edit = edits::ChangeControl(project_.State(), control, input);
    edit.held = widgets_.IsHeld(control);
    edit.mergeKey = MergeKey(control, edit.held);
    project_.Apply(std::move(edit));
    // A rule may have refused what the control shows.
    widgets_.Show(project_.Values());
}

void SettingsController::Reset(ResetGroup group) {
    project_.Apply(edits::ResetSettings(project_.State(), group));
}

}  // namespace lumirra
