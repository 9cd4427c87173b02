#include <algorithm>
#include <array>

#include "app/ViewController.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

/// What is disabled while a job runs, in this order.
std::array<QWidget*, 89> LockedControls(const Ui::MainWindow& ui) {
    return {// the sources and the frames
            ui.buttonSelectVideo, ui.buttonSelectImage, ui.buttonRemoveSelectedFrame,
            ui.buttonRemoveAllFrames, ui.buttonMoveUp, ui.buttonMoveDown, ui.buttonZoomIn,
            ui.buttonZoomOut, ui.buttonResetZoom, ui.buttonCloseVideo, ui.buttonPlayVideo,
            ui.buttonPreviousImage, ui.buttonNextImage, ui.sliderVideoPosition,
            ui.sliderVideoPosition,  // the slider and its cell: one widget
            ui.buttonAddFrame, ui.buttonMarkAsStartTime, ui.buttonMarkAsEndTime,
            // the Extract tab
            ui.radioFixedNumberOfFrames, ui.stepperFixedNumberOfFrames,
            ui.textFieldFixedIntervalBetweenFrames, ui.textFieldFixedNumberOfFrames,
            ui.radioFixedIntervalBetweenFrames, ui.stepperFixedIntervalBetweenFrames,
            ui.comboPlayMode, ui.buttonAddFramesAutomatically,
            // the Adjust tab
            ui.sliderBrightness, ui.sliderContrast, ui.sliderSaturation, ui.sliderExposure,
            ui.sliderGamma, ui.sliderHue, ui.buttonAdjustSettingsReset,
            // the Effects tab
            ui.checkColorEffect, ui.comboColorEffect, ui.checkCartoon, ui.buttonCartoonReset,
            ui.sliderCartoonBlur, ui.sliderCartoonThreshold, ui.sliderCartoonQuantization,
            ui.checkSketch, ui.buttonSketchReset, ui.sliderSketchIntensity, ui.sliderSketchEdge,
            ui.checkVignette, ui.buttonVignetteReset, ui.sliderVignetteRadius,
            // the Text tab
            ui.textFieldText, ui.colorWellTextColor, ui.comboTextFontType, ui.textFieldTextFontSize,
            ui.stepperTextFontSize, ui.textFieldTextOpacity, ui.stepperTextOpacity,
            ui.comboTextPosition, ui.textFieldTextXOffset, ui.stepperTextXOffset,
            ui.textFieldTextYOffset, ui.stepperTextYOffset, ui.checkTextShadow, ui.checkTextStroke,
            ui.buttonTextReset,
            // the Crop tab
            ui.radioAutoCropTo, ui.comboAspectRatio, ui.radioCustomCropUsing, ui.comboCustomCrop,
            ui.textFieldCustomCropOriginX, ui.textFieldCustomCropOriginY,
            ui.textFieldCustomCropHeight, ui.textFieldCustomCropWidth, ui.textFieldDimensionsWidth,
            ui.stepperCustomCropOriginX, ui.stepperCustomCropOriginY, ui.stepperCustomCropWidth,
            ui.stepperCustomCropHeight, ui.textFieldResizeTo, ui.stepperResizeTo,
            ui.textFieldDimensionsHeight, ui.buttonCropResizeReset,
            // the Output tab and the GIF
            ui.textFieldFrameDelay, ui.stepperFrameDelay, ui.textFieldLoopCount,
            ui.stepperLoopCount, ui.buttonGeneratePreview, ui.buttonPlayStopPreview,
            ui.checkCustomColorCount, ui.sliderCustomColorCount, ui.buttonOutputReset,
            ui.buttonSaveGif};
}

/// The user's own preferences, which the run has read as well.
std::array<QWidget*, 4> LockedPreferences(const Ui::MainWindow& ui) {
    return {ui.sliderQuality, ui.checkMaxSize, ui.fieldMaxSize, ui.checkRepeatForever};
}

}  // namespace

void ViewController::DisableAllControls() {
    const auto controls = LockedControls(ui_);
    const auto preferences = LockedPreferences(ui_);
    QWidget* focused = focusWidget();
    if (std::count(controls.begin(), controls.end(), focused) > 0 ||
        std::count(preferences.begin(), preferences.end(), focused) > 0) {
        // Else the keyboard would walk through the controls as they are disabled. Leaving a field
        // also accepts what was typed in it.
        focusBeforeLock_ = focused;
        setFocus();
    }
    for (QWidget* control : controls) {
        control->setEnabled(false);
    }
    for (QWidget* preference : preferences) {
        preference->setEnabled(false);
    }
    AcceptSources(false);
}

/// The end of `DisableAllControls`: the keyboard goes back to where it was, unless it was used
/// elsewhere meanwhile.
void ViewController::ReturnFocus() {
    if (focusBeforeLock_ != nullptr && focusBeforeLock_->isEnabled() &&
        (focusWidget() == nullptr || focusWidget() == this)) {
        focusBeforeLock_->setFocus();
    }
    focusBeforeLock_ = nullptr;
}

/// Whether files may be dropped.
void ViewController::AcceptSources(bool accepted) {
    ui_.customViewVideo->setAcceptDrops(accepted);
    ui_.imageViewVideo->setAcceptDrops(accepted);
}

}  // namespace lumirra
