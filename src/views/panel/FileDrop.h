#pragma once

#include <QString>
#include <QStringList>

class QMimeData;

namespace lumirra {

/// What files that came together mean: a video, pictures, or nothing that can be opened.
struct FileDrop {
    QString videoPath;       ///< or empty:
    QStringList imagePaths;  ///< or empty:
    QString reason;          ///< why none of them is taken
};

/// The local files of a drag, in its order, without dot segments. Addresses that are no local files
/// are left out.
QStringList LocalPaths(const QMimeData& data);

}  // namespace lumirra
