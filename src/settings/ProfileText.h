#pragma once

#include <QJsonObject>
#include <QString>
#include <optional>

#include "imaging/Outcome.h"
#include "settings/ControlValues.h"

namespace lumirra {

inline constexpr int kProfileLines = 62;

/// What a profile holds.
struct Profile {
    ControlValues values;
    QJsonObject unknown = {};  ///< of its tail: settings of other versions, kept as they are
    friend bool operator==(const Profile&, const Profile&) = default;
};

/// The profile's text: 62 lines, each ended by a line feed, in the table's coding, then the tail. A
/// line cannot hold a line break inside a text: each run of them is written as one space there. The
/// alpha of the text colour is not stored.
QString ProfileText(const Profile& profile);

/// Absent when the text is not 62 lines, each ended by one of LF, VT, FF, CR, NEL, LS or PS, and
/// one more piece, or when a number does not parse. Numbers, states and indices beyond their
/// control's range become the nearest limit, "nan" leaves the initial value; texts are taken as
/// they are. The colour is opaque, the crop unit in force is the stored one. A last piece that is
/// no tail of ours is ignored.
std::optional<Profile> ProfileFromText(const QString& text);

/// Reads a profile file in UTF-8, or UTF-16 with a byte order mark. Fails with "Could not load
/// profile." for a file that cannot be read or decoded, is larger than a megabyte or is not a
/// profile.
Outcome<Profile> LoadProfile(const QString& path);

/// Writes the profile in UTF-8; an old file is replaced only when the new one is complete. Fails
/// with "Could not save profile.".
Outcome<Done> SaveProfile(const Profile& profile, const QString& path);

}  // namespace lumirra
