#include "project/edits/PresetEdits.h"

#include <QCoreApplication>

#include "project/ExportRequest.h"
#include "project/presets/PresetFit.h"
#include "settings/SettingsRecords.h"
#include "settings/ValueRules.h"

namespace lumirra {
namespace {

QString Label(const char* text) {
    return QCoreApplication::translate("lumirra::Edit", text);
}

/// Without frames the preset's own width.
int WidthFor(const Preset& preset, const Document& document, const ControlValues& values) {
    const ImageSize canvas = CanvasOf(ExportRequest(values, FramesOf(document.frames)));
    if (!(canvas.width > 0)) {
        return preset.maxWidth;
    }
    const ImageSize fitting = FittingSize(preset, canvas);
    return fitting == canvas ? 0 : static_cast<int>(fitting.width);
}

/// Running back to the start takes all frames but one twice.
ControlValues WithFrameCount(ControlValues values, int most) {
    const ExtractionSettings extraction = ExtractionSettingsOf(values);
    const bool twice = extraction.playMode != PlayMode::Forward;
    const int count = twice ? (most + 1) / 2 : most;
    if (most == 0 || !extraction.fixedNumber || extraction.frameCount <= count) {
        return values;
    }
    return CommitField(std::move(values), Control::TextFieldFixedNumberOfFrames,
                       QString::number(count));
}

}  // namespace

Edit edits::ChoosePreset(const Document& document, const std::optional<Preset>& preset) {
    Edit edit{.label = Label("Preset"), .after = document, .marks = true};
    Settings& settings = edit.after.settings;
    if (!settings.Preset().isEmpty()) {
        settings.values.SetOn(Control::CheckMaxSize, false);
        settings.values.SetOn(Control::CheckMaxWidth, false);
    }
    settings.SetPreset(preset ? preset->name : QString());
    if (!preset) {
        return edit;
    }
    if (preset->maxBytes > 0) {
        settings.values = WithMaxBytes(std::move(settings.values), preset->maxBytes);
    }
    if (const int width = WidthFor(*preset, document, settings.values); width > 0) {
        settings.values = WithMaxWidth(std::move(settings.values), width);
    }
    settings.values = WithFrameCount(std::move(settings.values), preset->maxFrames);
    settings.textFieldsValues = StoreTextFieldsValues(settings.values);
    return edit;
}

Edit edits::LimitWidth(const Document& document, int width) {
    Edit edit{.label = Label("Largest Width"), .after = document, .marks = true};
    Settings& settings = edit.after.settings;
    settings.values = WithMaxWidth(std::move(settings.values), width);
    return edit;
}

}  // namespace lumirra
