#include "output/frames/CanvasFit.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "imaging/CropScale.h"
#include "imaging/Effects.h"
#include "imaging/PixelLimits.h"
#include "imaging/Words.h"
#include "output/frames/FrameReader.h"

namespace lumirra {

namespace {

/// 256 levels leave every channel of 8 bits where it is.
constexpr int kAllLevels = 256;

Failure NoFrames() {
    return {Failure::Kind::Unreadable, QStringLiteral("None of the frames can be read."), {}};
}

Failure CanvasTooLarge(long long width, long long height, const AnimationEncoder& encoder) {
    return {Failure::Kind::TooLarge,
            Filled(QStringLiteral(
                       "The frames need a picture of %1 x %2 pixels, which is too large for a "
                       "%5 (at most %3 on a side and %4 million pixels)."),
                   width, height, encoder.Limits().longestSide, kMaxFramePixels / 1'000'000,
                   encoder.Name()),
            {}};
}

/// What is `from` wide becomes `to` wide; in whole pixels. The order of the operations keeps halves
/// exact, so that all agree on which way they are rounded.
ImageSize Scaled(ImageSize size, double from, double to) {
    return {std::max(std::round(size.width * to / from), 1.0),
            std::max(std::round(size.height * to / from), 1.0)};
}

QImage ScaledForCanvas(const QImage& frame, const CanvasFit& fit) {
    if (fit.framesWidth == 0 || fit.mode == FrameFitMode::CropToSmallest) {
        return frame;
    }
    const ImageSize size =
        Scaled({static_cast<double>(frame.width()), static_cast<double>(frame.height())},
               fit.framesWidth, fit.width);
    return ImageTools::DrawScaled(frame, size.width, size.height);
}

QImage CroppedToCanvas(const QImage& frame, const CanvasFit& fit) {
    const ImageRect rect = ImageTools::RatioCropRect(frame.width(), frame.height(), fit.ratio);
    return ImageTools::DrawScaled(ImageTools::CropImage(frame, rect), fit.width, fit.height);
}

/// A pixel is drawn from half its alpha on.
void CopyHardRow(const uchar* from, Rgba* to, int count) {
    constexpr std::uint8_t kOpaqueFrom = 128;
    for (int x = 0; x < count; ++x) {
        Rgba color;
        std::memcpy(&color, from + static_cast<std::ptrdiff_t>(x) * 4, sizeof color);
        const bool opaque = color.a >= kOpaqueFrom;
        color.a = 255;
        to[x] = opaque ? color : Rgba{};
    }
}

}  // namespace

Outcome<CanvasFit> FitFor(const AnimationRequest& request, const AnimationEncoder& encoder) {
    CanvasFit fit;
    fit.mode = request.fitMode;
    fit.softAlpha = encoder.Limits().softAlpha;
    const FrameSizes sizes = SizesOf(request.frames);
    ImageSize size = VideoTools::LargestFrameSize(sizes);
    if (!(size.width > 0) || !(size.height > 0)) {
        return NoFrames();
    }
    if (fit.mode == FrameFitMode::CropToSmallest) {
        fit.ratio = VideoTools::CommonAspectRatio(sizes);
        const ImageSize smallest = VideoTools::SmallestFrameSize(sizes);
        const ImageRect canvas =
            ImageTools::RatioCropRect(smallest.width, smallest.height, fit.ratio);
        size = {std::max(std::round(canvas.width), 1.0), std::max(std::round(canvas.height), 1.0)};
    }
    if (request.maxWidth > 0 && size.width > request.maxWidth) {
        fit.framesWidth = size.width;
        size = Scaled(size, size.width, request.maxWidth);
    }
    const int longest = encoder.Limits().longestSide;
    if (size.width > longest || size.height > longest ||
        size.width * size.height > static_cast<double>(kMaxFramePixels)) {
        return CanvasTooLarge(std::llround(size.width), std::llround(size.height), encoder);
    }
    fit.width = static_cast<int>(size.width);
    fit.height = static_cast<int>(size.height);
    return fit;
}

Canvas PlaceOnCanvas(const QImage& frame, const CanvasFit& fit, int colorLevels) {
    QImage image = ScaledForCanvas(frame, fit);
    if (colorLevels != kAllLevels) {
        image = ImageTools::Posterize(image, std::max(colorLevels, 0));
    }
    if (fit.mode == FrameFitMode::CropToSmallest) {
        image = CroppedToCanvas(image, fit);
    }
    Canvas canvas{fit.width, fit.height, {}};
    canvas.pixels.resize(static_cast<std::size_t>(fit.width) *
                         static_cast<std::size_t>(fit.height));
    const int left = std::max(fit.width - image.width(), 0) / 2;
    const int top = std::max(fit.height - image.height(), 0) / 2;
    const int columns = std::min(image.width(), fit.width);
    const int rows = std::min(image.height(), fit.height);
    for (int y = 0; y < rows; ++y) {
        Rgba* row = canvas.Row(top + y) + left;
        if (fit.softAlpha) {
            std::memcpy(row, image.constScanLine(y),
                        sizeof(Rgba) * static_cast<std::size_t>(columns));
        } else {
            CopyHardRow(image.constScanLine(y), row, columns);
        }
    }
    return canvas;
}

}  // namespace lumirra
