#pragma once

#include <QStringList>
#include <functional>

class QMimeData;

namespace lumirra {

/// What a drop of files means, decided from its first file.
struct FileDrop {
    enum class Kind { Refused, Video, Images };
    Kind kind = Kind::Refused;
    QString videoPath;
    QStringList imagePaths;  ///< every accepted picture of the drop, in its order
};

/// Judges a drop by the extensions (lower case, without the point), any case in the names. Folders
/// and addresses that are no local files are refused. No file is decoded.
FileDrop JudgeDrop(const QMimeData& data, const QStringList& videoTypes,
                   const QStringList& imageTypes);

}  // namespace lumirra
