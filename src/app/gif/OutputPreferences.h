#pragma once

#include "output/GifWriter.h"

namespace lumirra {

/// How this user wants GIFs to be written, whatever the project: kept in the user's settings, no
/// part of a profile.
struct OutputPreferences {
    int quality = 90;  ///< 1..100
    bool limitsSize = false;
    double megabytes = 8;  ///< of 1,000,000 bytes; in force when `limitsSize`
    bool repeatForever = false;

    friend bool operator==(const OutputPreferences&, const OutputPreferences&) = default;
};

constexpr double kLeastMegabytes = 0.1;
constexpr double kMostMegabytes = 1000;

/// What was kept; values out of range are brought into it.
OutputPreferences LoadOutputPreferences();
void KeepOutputPreferences(const OutputPreferences& preferences);

/// The request with quality, size limit and loop choice of the preferences.
GifRequest WithPreferences(GifRequest request, const OutputPreferences& preferences);

}  // namespace lumirra
