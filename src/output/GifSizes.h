#pragma once

#include <QStringList>

#include "imaging/Geometry.h"

namespace lumirra {

/// How frames of different sizes are brought to one canvas.
enum class FrameFitMode { CenterOnCanvas = 0, CropToSmallest = 1 };

namespace VideoTools {

// Each reads the headers of the frame files; an unreadable file is skipped. Any thread.

/// Largest width and, apart from it, largest height. (0, 0) for an empty list.
ImageSize LargestFrameSize(const QStringList& framePaths);
/// Smallest of each. (200000, 200000) when no file is readable.
ImageSize SmallestFrameSize(const QStringList& framePaths);
/// Width over height that all frames are cropped to by `CropToSmallest`.
float CommonAspectRatio(const QStringList& framePaths);
/// Whether any frame's size differs from the first's; unreadable differs from readable. The list
/// must not be empty.
bool FramesHaveDifferentSizes(const QStringList& framePaths);

}  // namespace VideoTools

namespace ImageTools {

/// The largest centred rectangle of that ratio in a width x height area.
ImageRect RatioCropRect(double width, double height, float ratio);

}  // namespace ImageTools
}  // namespace lumirra
