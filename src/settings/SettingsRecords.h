#pragma once

#include "imaging/EffectSettings.h"
#include "settings/ControlValues.h"

namespace lumirra {

// The records that the engine works with, taken from one snapshot of the controls. Every number in
// them is finite and within its control's limits, whatever text a field holds. Pure, any thread.

/// `position`: of the picture in the video, 0..1.
EffectSettings EffectSettingsOf(const ControlValues& values, float position = 0);
CaptureSettings CaptureSettingsOf(const ControlValues& values);
ExtractionSettings ExtractionSettingsOf(const ControlValues& values);

/// What the GIF encoder needs.
struct OutputSettings {
    int colorLevels = 256;  ///< levels of each channel; 256 leaves the colours alone
    double delaySeconds = 0.1;
    double loopCount = 0;
    bool repeatForever = false;  ///< whatever the loop count
    double quality = 90;         ///< 1..100
    long long maxBytes = 0;      ///< 0: any size
    int maxWidth = 0;            ///< 0: as wide as the frames
    friend bool operator==(const OutputSettings&, const OutputSettings&) = default;
};
OutputSettings OutputSettingsOf(const ControlValues& values);

/// The values with a size limit of that many bytes in force, or of the few less that single
/// precision takes.
ControlValues WithMaxBytes(ControlValues values, long long bytes);

/// The values with that largest width in force.
ControlValues WithMaxWidth(ControlValues values, int width);

}  // namespace lumirra
