#include "settings/CropResize.h"

#include "app/ViewController.h"
#include "app/controls/ControlWidgets.h"
#include "ui_MainWindow.h"
#include "views/panel/VideoImageView.h"

namespace lumirra {

/// The picture shown, which stands at its pixel size whatever the source.
ImageSize ViewController::BaseSize() const {
    const QImage shown = ui_.imageViewVideo->Image();
    return {static_cast<double>(shown.width()), static_cast<double>(shown.height())};
}

void ViewController::UpdateCropResizeGeometry() {
    const ControlValues values = lumirra::UpdateCropResizeGeometry(Values(), BaseSize());
    controls_->Write(values);
    state_.lastDimensions = DimensionsIn(values);
}

void ViewController::OnTextFieldDimensionsChanged(Control dimensionField) {
    const ControlValues before = Values();
    TypedDimensionResult typed = TypedDimension(before, dimensionField, before.Text(dimensionField),
                                                BaseSize(), state_.lastDimensions);
    controls_->Write(typed.values);
    if (typed.acted) {
        state_.lastDimensions = DimensionsIn(typed.values);
        MarkModified();
    }
}

void ViewController::OnCropResizeReset() {
    controls_->Write(ResetCropResize(Values(), BaseSize()));
    StoreTextFieldsValues();
    UpdateVideoPreview();
    MarkModified();
}

}  // namespace lumirra
