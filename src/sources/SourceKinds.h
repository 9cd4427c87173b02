#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "imaging/Outcome.h"

namespace lumirra {

/// What a file can be a source as.
enum class SourceKind {
    Video,
    Still,
    ManyPictures,  ///< an animation or pages; opens as its first picture
};

/// By what is in the file; its name has no say. Reads headers, decodes nothing that is shown, and
/// never waits on a pipe or device. The failure says in a sentence why the file can be no source.
/// Any thread.
Outcome<SourceKind> ProbeSource(const QString& path);

/// The file is of a picture format; a video or anything else is not. Reads its first bytes only.
bool IsPictureFile(const QString& path);

/// What to do with files that came together, from a panel, a drop or as arguments.
struct SourceChoice {
    QString videoPath;             ///< or empty:
    QStringList picturePaths;      ///< in their order
    std::vector<Failure> leftOut;  ///< a sentence for each file that is not taken
};
/// The first file decides: a video is taken alone, with a picture come all pictures. Fails when
/// the first can be no source, with the reason. Any thread.
Outcome<SourceChoice> ChooseSource(const QStringList& paths);

/// Name filters of a panel that opens videos or pictures, for instance "Videos (*.[mM][oO][vV])":
/// the usual types first, then all types that may be read, then all files. Any case matches.
QStringList NameFilters(SourceKind kind);

}  // namespace lumirra
