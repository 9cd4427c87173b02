#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "imaging/Geometry.h"

namespace lumirra {

/// How frames of different sizes are brought to one canvas.
enum class FrameFitMode { CenterOnCanvas = 0, CropToSmallest = 1 };

/// A frame to be written.
struct FrameInput {
    QString path;
    std::optional<ImageSize> size;  ///< pixels; absent: the file's header tells
    std::optional<int> delay;       ///< hundredths of a second; absent: the request's
    friend bool operator==(const FrameInput&, const FrameInput&) = default;
};

/// Frames of which nothing but the file is known.
std::vector<FrameInput> FramesAt(const QStringList& paths);

/// One for each frame; nothing for a frame whose file is missing or no picture.
using FrameSizes = std::vector<std::optional<ImageSize>>;

/// Reads the headers of files whose size is not known. Any thread.
FrameSizes SizesOf(const std::vector<FrameInput>& frames);

namespace VideoTools {

// Unreadable frames are skipped. Any thread.

/// Largest width and, apart from it, largest height. (0, 0) for an empty list.
ImageSize LargestFrameSize(const FrameSizes& sizes);
/// Smallest of each. (200000, 200000) when no file is readable.
ImageSize SmallestFrameSize(const FrameSizes& sizes);
/// Width over height that all frames are cropped to by `CropToSmallest`.
float CommonAspectRatio(const FrameSizes& sizes);
/// Whether any frame's size differs from the first's; unreadable differs from readable. The list
/// must not be empty.
bool FramesHaveDifferentSizes(const FrameSizes& sizes);

}  // namespace VideoTools

namespace ImageTools {

/// The largest centred rectangle of that ratio in a width x height area.
ImageRect RatioCropRect(double width, double height, float ratio);

}  // namespace ImageTools
}  // namespace lumirra
