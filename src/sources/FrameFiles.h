#pragma once

#include <QImage>
#include <QString>
#include <cstdint>

#include "imaging/Outcome.h"

namespace lumirra {

/// "frame" + whole milliseconds since 1970 + ".png".
QString FrameFileName(std::int64_t millisecondsSince1970);

/// A frame path in `directory` that no other call in this or any other process is given. An empty
/// file of that name holds the place until `StoreFrame` fills or `RemoveFrame` frees it. Names
/// ascend in the order of the calls. Fails when the directory takes no file. Any thread.
Outcome<QString> NextFramePath(const QString& directory);

/// The frame path less its last four characters plus "_small.png".
QString ThumbnailPath(const QString& framePath);

inline constexpr int kThumbnailWidth = 372;
/// What a thumbnail of an extremely narrow frame is limited to; others keep the frame's shape.
inline constexpr double kMaxThumbnailHeight = 32767;

/// Writes the frame and its thumbnail, `kThumbnailWidth` wide; both or neither stay. The caller
/// appends the path to its list. Any thread.
Outcome<Done> StoreFrame(const QImage& picture, const QString& framePath);

/// Makes `framePath` and its thumbnail copies of another frame's; both or neither stay. Any thread.
Outcome<Done> CopyFrame(const QString& fromFramePath, const QString& framePath);

/// As `CopyFrame`, but both names stand for the same file where the file system can.
Outcome<Done> LinkFrame(const QString& fromFramePath, const QString& framePath);

/// Removes the frame's file and its thumbnail, as far as they are there.
void RemoveFrame(const QString& framePath);

}  // namespace lumirra
