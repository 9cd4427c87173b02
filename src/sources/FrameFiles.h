#pragma once

#include <QImage>
#include <QString>
#include <cstdint>

#include "imaging/Outcome.h"

namespace lumirra {

/// "frame" + whole milliseconds since 1970 + ".png".
QString FrameFileName(std::int64_t millisecondsSince1970);

/// A frame path in `directory` that no other call in this or any other process is given.
QString NextFramePath(const QString& directory);

/// The frame path less its last four characters plus "_small.png".
QString ThumbnailPath(const QString& framePath);

inline constexpr int kThumbnailWidth = 372;

/// Writes the frame and its thumbnail; both or neither stay. The caller appends the path to its
/// list. Any thread.
Outcome<Done> StoreFrame(const QImage& picture, const QString& framePath);

}  // namespace lumirra
