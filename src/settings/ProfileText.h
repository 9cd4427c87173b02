#pragma once

#include <QString>
#include <optional>

#include "imaging/Outcome.h"
#include "settings/ControlValues.h"

namespace lumirra {

inline constexpr int kProfileLines = 62;

/// The profile of these values: 62 lines, each ended by a line feed, in the table's coding. The
/// format cannot hold a line break inside a text, so each run of line breaks in a text field is
/// written as one space. The alpha of the text colour is not stored.
QString ProfileText(const ControlValues& values);

/// The values that a profile holds. Absent when the text is not 62 lines, each ended by one of LF,
/// VT, FF, CR, NEL, LS or PS, or when a number does not parse or is not finite. Numbers, states and
/// indices beyond their control's range become the nearest limit; texts are taken as they are. The
/// colour is opaque, the crop unit in force is the stored one.
std::optional<ControlValues> ValuesFromProfile(const QString& text);

/// Reads a profile file in UTF-8, or UTF-16 with a byte order mark. Fails with "Could not load
/// profile." for a file that cannot be read or decoded, is larger than a megabyte or is not a
/// profile.
Outcome<ControlValues> LoadProfile(const QString& path);

/// Writes the profile in UTF-8; an old file is replaced only when the new one is complete. Fails
/// with "Could not save profile.".
Outcome<Done> SaveProfile(const ControlValues& values, const QString& path);

}  // namespace lumirra
