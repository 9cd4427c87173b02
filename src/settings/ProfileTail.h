#pragma once

#include "settings/ProfileText.h"

namespace lumirra {

// The piece after a profile's last line: one line of JSON with what the lines cannot hold. Programs
// that know the lines alone ignore it. Pure, any thread.

/// An object of the settings of scope `ProfileTail` that differ from their initial values, the
/// texts whose line breaks a line lost, and `unknown`; empty when there is none of these. Holds no
/// line break.
QString ProfileTail(const Profile& profile);

/// What a tail says becomes part of the profile, whose lines have been read: numbers and indices
/// beyond their range become the nearest limit, a value of the wrong kind is left out, a text
/// counts only while its line holds the same words, names that are no setting's become `unknown`. A
/// tail without our mark changes nothing.
void TakeProfileTail(Profile& profile, const QString& tail);

/// The text as a profile's line holds it: each run of line breaks is one space.
QString InOneLine(const QString& text);

/// Whether a profile ends a line at this character.
bool IsLineBreak(QChar c);

}  // namespace lumirra
