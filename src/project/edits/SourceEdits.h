#pragma once

#include <QString>
#include <QStringList>

#include "project/Edit.h"

namespace lumirra::edits {

// Decisions about the source. Pure; each gives the edit to apply to that document. None of them
// counts as an unsaved change: the source is no part of a profile.

/// Replaces what is open; the markers stand at the start and the end.
Edit OpenVideo(const Document& document, const QString& path);

/// Adds the pictures that are not listed yet and shows the first of them; they replace a video.
Edit OpenPictures(const Document& document, const QStringList& paths);

Edit CloseSource(const Document& document);

enum class Marker { Start, End };
/// A marker at that position of the video. Start lies before End; the caller has checked it with
/// `MayMark`.
Edit SetMarker(const Document& document, Marker marker, float position);

/// Both markers at once, `start` before `end`: the loop that was found.
Edit SetMarkers(const Document& document, float start, float end);

}  // namespace lumirra::edits

namespace lumirra {

/// Whether Start stays before End.
bool MayMark(const Source& source, edits::Marker marker, float position);

// Moving through the source, no decision: for `Project::Follow`.

/// The position of the video, 0..1.
Document AtPosition(Document document, float position);
/// The picture of that number; one that does not exist changes nothing.
Document AtPicture(Document document, int number);

}  // namespace lumirra
