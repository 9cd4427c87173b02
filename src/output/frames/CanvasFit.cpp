#include "output/frames/CanvasFit.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "imaging/CropScale.h"
#include "imaging/Effects.h"
#include "output/frames/FrameFile.h"

namespace lumirra {

namespace {

/// 256 levels leave every channel of 8 bits where it is.
constexpr int kAllLevels = 256;

Failure NoFrames() {
    return {Failure::Kind::Unreadable, QStringLiteral("None of the frames can be read."), {}};
}

Failure CanvasTooLarge(long long width, long long height) {
    return {Failure::Kind::TooLarge,
            QStringLiteral("The frames need a picture of %1 x %2 pixels, which is too large for a "
                           "GIF (at most %3 on a side and %4 million pixels).")
                .arg(width)
                .arg(height)
                .arg(kMaxGifSide)
                .arg(kMaxFramePixels / 1'000'000),
            {}};
}

QImage CroppedToCanvas(const QImage& frame, const CanvasFit& fit) {
    const ImageRect rect = ImageTools::RatioCropRect(frame.width(), frame.height(), fit.ratio);
    return ImageTools::DrawScaled(ImageTools::CropImage(frame, rect), fit.width, fit.height);
}

void CopyRow(const uchar* from, gif::Rgba* to, int count) {
    for (int x = 0; x < count; ++x) {
        gif::Rgba color;
        std::memcpy(&color, from + static_cast<std::ptrdiff_t>(x) * 4, sizeof color);
        const bool opaque = color.a >= gif::kOpaqueFrom;
        color.a = 255;
        to[x] = opaque ? color : gif::Rgba{};
    }
}

}  // namespace

Outcome<CanvasFit> FitFor(const QStringList& framePaths, FrameFitMode mode) {
    CanvasFit fit;
    fit.mode = mode;
    ImageSize size = VideoTools::LargestFrameSize(framePaths);
    if (!(size.width > 0) || !(size.height > 0)) {
        return NoFrames();
    }
    if (mode == FrameFitMode::CropToSmallest) {
        fit.ratio = VideoTools::CommonAspectRatio(framePaths);
        const ImageSize smallest = VideoTools::SmallestFrameSize(framePaths);
        const ImageRect canvas =
            ImageTools::RatioCropRect(smallest.width, smallest.height, fit.ratio);
        size = {std::max(std::round(canvas.width), 1.0), std::max(std::round(canvas.height), 1.0)};
    }
    if (size.width > kMaxGifSide || size.height > kMaxGifSide ||
        size.width * size.height > static_cast<double>(kMaxFramePixels)) {
        return CanvasTooLarge(std::llround(size.width), std::llround(size.height));
    }
    fit.width = static_cast<int>(size.width);
    fit.height = static_cast<int>(size.height);
    return fit;
}

gif::Picture PlaceOnCanvas(const QImage& frame, const CanvasFit& fit, int colorLevels) {
    QImage image =
        colorLevels == kAllLevels ? frame : ImageTools::Posterize(frame, std::max(colorLevels, 0));
    if (fit.mode == FrameFitMode::CropToSmallest) {
        image = CroppedToCanvas(image, fit);
    }
    gif::Picture canvas{fit.width, fit.height, {}};
    canvas.pixels.resize(static_cast<std::size_t>(fit.width) *
                         static_cast<std::size_t>(fit.height));
    const int left = std::max(fit.width - image.width(), 0) / 2;
    const int top = std::max(fit.height - image.height(), 0) / 2;
    const int columns = std::min(image.width(), fit.width);
    const int rows = std::min(image.height(), fit.height);
    for (int y = 0; y < rows; ++y) {
        CopyRow(image.constScanLine(y), canvas.Row(top + y) + left, columns);
    }
    return canvas;
}

}  // namespace lumirra
