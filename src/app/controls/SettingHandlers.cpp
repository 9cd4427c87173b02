#include "app/ViewController.h"
#include "app/controls/ControlWidgets.h"
#include "settings/ValueRules.h"

namespace lumirra {

ControlValues ViewController::Values() const {
    return controls_->Read();
}

void ViewController::StoreTextFieldsValues() {
    state_.textFieldsValues = lumirra::StoreTextFieldsValues(Values());
}

void ViewController::OnControlEdited(Control control) {
    const ControlRow& row = RowOf(control);
    if (control == Control::TextFieldDimensionsWidth ||
        control == Control::TextFieldDimensionsHeight) {
        OnTextFieldDimensionsChanged(control);
        return;
    }

    ControlValues values = Values();
    bool textDiffers = false;
    if (row.kind == ControlKind::Text) {
        const QString typed = values.Text(control);
        values = CommitField(std::move(values), control, typed);
        textDiffers = DiffersFromAccepted(values, state_.textFieldsValues, control);
    } else if (row.kind == ControlKind::Stepper) {
        const float value = values.Number(control);
        values = MoveStepper(std::move(values), control, value);
    } else if (row.kind == ControlKind::Radio) {
        values = ChooseRadio(std::move(values), control);
    } else if (control == Control::ComboCustomCrop) {
        const int unit = values.Index(control);
        values = ChangeCropUnit(std::move(values), unit, BaseSize());
    }
    controls_->Write(values);

    const ChangeConsequence consequence = ConsequenceOf(control, values, textDiffers);
    if (consequence.snapshot) {
        StoreTextFieldsValues();
    }
    if (consequence.preview) {
        RequestPreview(controls_->IsDragged(control));
    }
    if (consequence.geometry) {
        UpdateCropResizeGeometry();
    }
    if (consequence.markModified) {
        MarkModified();
    }
    ShowExtractionPlan();
    RefreshSizeEstimate();
}

void ViewController::ResetGroup(lumirra::ResetGroup group, std::optional<Control> onlyWhenOn) {
    const ControlValues values = ResetGroupOf(Values(), group);
    controls_->Write(values);
    if (!onlyWhenOn || values.IsOn(*onlyWhenOn)) {
        UpdateVideoPreview();
    }
    MarkModified();
}

void ViewController::OnAdjustSettingsReset() {
    ResetGroup(lumirra::ResetGroup::Adjust, std::nullopt);
}

void ViewController::OnCartoonReset() {
    ResetGroup(lumirra::ResetGroup::Cartoon, Control::CheckCartoon);
}

void ViewController::OnScketchReset() {
    ResetGroup(lumirra::ResetGroup::Sketch, Control::CheckSketch);
}

void ViewController::OnVignetteReset() {
    ResetGroup(lumirra::ResetGroup::Vignette, Control::CheckVignette);
}

void ViewController::OnTextReset() {
    controls_->Write(ResetGroupOf(Values(), lumirra::ResetGroup::Text));
    StoreTextFieldsValues();
    UpdateVideoPreview();
    MarkModified();
}

void ViewController::OnOutputReset() {
    controls_->Write(ResetGroupOf(Values(), lumirra::ResetGroup::Output));
    RefreshSizeEstimate();
}

}  // namespace lumirra
