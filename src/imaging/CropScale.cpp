#include "imaging/CropScale.h"

#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "imaging/CropGeometry.h"
#include "imaging/PictureFormat.h"
#include "imaging/PixelLimits.h"
#include "imaging/RowBands.h"
#include "imaging/kernels/Resample.h"

namespace lumirra::ImageTools {
namespace {

bool IsOpaque(const QImage& rgba) {
    const int width = rgba.width();
    for (int y = 0; y < rgba.height(); ++y) {
        // Whole words, since the loop over every fourth byte is not vectorised.
        const auto* row = reinterpret_cast<const std::uint32_t*>(rgba.constScanLine(y));
        std::uint32_t all = ~0U;
        for (int x = 0; x < width; ++x) {
            all &= row[x];
        }
        if ((all & qToBigEndian(0xFFU)) != qToBigEndian(0xFFU)) {
            return false;
        }
    }
    return true;
}

QImage Resample(const QImage& source, int width, int height, int threads) {
    QImage target = NewPicture({width, height}, QImage::Format_RGBA8888);
    const ResampleWeights across = MakeResampleWeights(source.width(), width);
    const ResampleWeights down = MakeResampleWeights(source.height(), height);
    const bool opaque = IsOpaque(source);
    std::uint8_t* const pixels = target.bits();
    const auto stride = static_cast<std::size_t>(target.bytesPerLine());
    ForEachRowBand(height, threads, [&](int first, int end) {
        std::vector<float> mixed(static_cast<std::size_t>(source.width()) * 4);
        std::vector<const std::uint8_t*> rows;
        for (int y = first; y < end; ++y) {
            const auto& span = down.spans[static_cast<std::size_t>(y)];
            rows.clear();
            for (int k = 0; k < span.count; ++k) {
                rows.push_back(source.constScanLine(span.first + k));
            }
            MixRows(rows.data(), down.weights.data() + span.weights, span.count, opaque,
                    mixed.data(), source.width());
            MixAlongRow(mixed.data(), across, pixels + static_cast<std::size_t>(y) * stride);
        }
    });
    return target;
}

}  // namespace

QRect WholePixelCrop(const ImageRect& rect, int width, int height) {
    if (!(rect.width >= 1) || !(rect.height >= 1) || rect.x > width || rect.y > height) {
        return {};
    }
    const ImageSize visible = VisibleCropSize(rect, width, height);
    if (!(visible.width > 0) || !(visible.height > 0)) {
        return {};
    }
    const auto side = [](double length, int limit) {
        return std::clamp(static_cast<int>(std::lround(length)), 1, limit);
    };
    const int w = side(visible.width, width);
    const int h = side(visible.height, height);
    const auto origin = [](double edge, int room) {
        return static_cast<int>(std::lround(std::clamp(edge, 0.0, static_cast<double>(room))));
    };
    return {origin(rect.x, width - w), height - h - origin(rect.y, height - h), w, h};
}

QImage CropImage(const QImage& image, const ImageRect& rect) {
    const QRect crop = WholePixelCrop(rect, image.width(), image.height());
    const QImage source = AsRgba8888(image);
    return crop.isEmpty() || source.isNull() || crop == source.rect() ? source
                                                                      : Made(source.copy(crop));
}

QImage DrawScaled(const QImage& image, double width, double height, int threads) {
    if (image.isNull() || !(width >= 1) || !(height >= 1) || !(width < kMaxFrameSide + 1.0) ||
        !(height < kMaxFrameSide + 1.0)) {
        return {};
    }
    const int w = static_cast<int>(width);
    const int h = static_cast<int>(height);
    if (std::int64_t{w} * h > kMaxSourcePixels) {
        return {};
    }
    const QImage source = AsRgba8888(image);
    return source.isNull() || source.size() == QSize(w, h) ? source
                                                           : Resample(source, w, h, threads);
}

QImage CropAndResizeCapturedFrame(const QImage& image, const CaptureSettings& settings,
                                  int threads) {
    const ImageRect rect = CropRectForImage(image.width(), image.height(), settings.effects);
    return DrawScaled(CropImage(image, rect), settings.width, settings.height, threads);
}

}  // namespace lumirra::ImageTools
