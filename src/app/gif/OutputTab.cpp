#include <QCheckBox>
#include <QDoubleSpinBox>
#include <cmath>

#include "app/ViewController.h"
#include "app/gif/OutputPreferences.h"
#include "app/gif/SizeEstimate.h"
#include "settings/SettingsRecords.h"
#include "ui_MainWindow.h"

namespace lumirra {

void ViewController::ConnectOutputTab() {
    sizeEstimate_ = std::make_unique<SizeEstimate>(*ui_.labelSizeEstimate);
    const OutputPreferences kept = LoadOutputPreferences();
    ui_.sliderQuality->setRange(1, 100);
    ui_.sliderQuality->setSingleStep(1);
    ui_.sliderQuality->setPageStep(10);
    ui_.sliderQuality->setDecimals(0);
    ui_.sliderQuality->setResetValue(OutputPreferences().quality);
    ui_.sliderQuality->setValue(kept.quality);
    ui_.fieldMaxSize->setRange(kLeastMegabytes, kMostMegabytes);
    ui_.fieldMaxSize->setValue(kept.megabytes);
    ui_.checkMaxSize->setChecked(kept.limitsSize);
    ui_.checkRepeatForever->setChecked(kept.repeatForever);
    ShowOutputPreferences();

    connect(ui_.sliderQuality, &ValueSlider::ValueEdited, this,
            &ViewController::OnOutputPreferenceChanged);
    connect(ui_.fieldMaxSize, &QDoubleSpinBox::valueChanged, this,
            &ViewController::OnOutputPreferenceChanged);
    connect(ui_.checkMaxSize, &QCheckBox::toggled, this,
            &ViewController::OnOutputPreferenceChanged);
    connect(ui_.checkRepeatForever, &QCheckBox::toggled, this,
            &ViewController::OnOutputPreferenceChanged);
}

OutputPreferences ViewController::Preferences() const {
    return {static_cast<int>(std::lround(ui_.sliderQuality->value())),
            ui_.checkMaxSize->isChecked(), ui_.fieldMaxSize->value(),
            ui_.checkRepeatForever->isChecked()};
}

void ViewController::OnOutputPreferenceChanged() {
    KeepOutputPreferences(Preferences());
    ShowOutputPreferences();
    RefreshSizeEstimate();
}

/// What does not count just now is greyed out.
void ViewController::ShowOutputPreferences() {
    ui_.sliderQuality->setEnabled(true);
    ui_.checkMaxSize->setEnabled(true);
    ui_.checkRepeatForever->setEnabled(true);
    ui_.fieldMaxSize->setEnabled(ui_.checkMaxSize->isChecked());
    const bool counts = !ui_.checkRepeatForever->isChecked();
    ui_.textFieldLoopCount->setEnabled(counts);
    ui_.stepperLoopCount->setEnabled(counts);
}

void ViewController::RefreshSizeEstimate() {
    GifRequest request;
    request.framePaths = state_.frames.Paths();
    request.colorLevels = OutputSettingsOf(Values()).colorLevels;
    sizeEstimate_->Follow(WithPreferences(std::move(request), Preferences()));
}

}  // namespace lumirra
