#pragma once

#include <QImage>
#include <QString>
#include <optional>

#include "imaging/DisplayTransform.h"
#include "imaging/Geometry.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// A picture with what there is to say about it: `problem` tells why `image` is null, or why it is
/// not the whole truth (a truncated file, a frame that could not be decoded).
struct SourceImage {
    QImage image;  ///< Format_RGBA8888, straight alpha, sRGB, upright, square pixels; may be null
    std::optional<Failure> problem;
};

namespace VideoTools {

/// The picture shown at `position` (0..1) of a video, or the still picture (position ignored), by
/// what is in the file. A
/// position inside the film whose picture cannot be decoded gives white of the stored size; a file
/// with no picture at all gives a null picture. Opens the file for this call alone; a run of
/// positions is better served by `VideoReader`. Any thread.
QImage ImageAtPosition(const QString& path, double position);
SourceImage ReadImageAtPosition(const QString& path, double position);

/// Seconds; 0 when the file is not a readable video.
double Duration(const QString& path);

/// How the video's pictures are to be shown, for the player; no change when the file is not a
/// readable video.
DisplayTransform Display(const QString& path);

/// "hh:mm:ss.t" of that point, tenths truncated.
QString TimeLabelAtPosition(const QString& path, double position);
QString TimeLabel(double seconds);

}  // namespace VideoTools

namespace ImageTools {

/// The largest width and, apart from it, the largest height over all pictures in the file, each
/// upright by its EXIF orientation. Absent when the file cannot be read as a picture. Reads headers
/// only. Any thread.
std::optional<ImageSize> PixelSize(const QString& path);

}  // namespace ImageTools
}  // namespace lumirra
