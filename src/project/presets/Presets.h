#pragma once

#include <QString>
#include <vector>

#include "imaging/Geometry.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// What a place takes of an animation. 0 means that it does not matter there.
struct Preset {
    QString name;   ///< what it is chosen by: "slack-emoji"
    QString place;  ///< for people
    QString date;   ///< when the figures were true: "2026-11"
    long long maxBytes = 0;
    int maxWidth = 0;
    int maxHeight = 0;
    long long maxPixels = 0;  ///< of one frame
    int maxFrames = 0;
    double maxSeconds = 0;
};

/// Where a person may keep presets of their own.
QString UserPresetsFile();

/// The program's presets and then those of `userFile`, a list of the same form (see
/// `presets.json`); of two with the same name the later one counts. No file is no failure; one that
/// cannot be understood is.
Outcome<std::vector<Preset>> LoadPresets(const QString& userFile);

/// The largest size of about that shape that the place takes, in whole pixels; `size` itself when
/// it is taken.
ImageSize FittingSize(const Preset& preset, ImageSize size);

/// Every how many of that many frames the place takes; 1 when it takes all.
int FittingStep(const Preset& preset, int frames);

/// What it takes, in a few words: "15.0 MB, 1280 × 1080, 350 frames".
QString LimitsText(const Preset& preset);

/// One line for each: name, place, what it takes, date.
QString ListPresets(const std::vector<Preset>& presets);

}  // namespace lumirra
