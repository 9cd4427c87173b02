#include "output/GifSizes.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "output/frames/FrameFile.h"

namespace lumirra {

namespace {

std::optional<ImageSize> SizeOf(const QString& path) {
    const Outcome<ImageSize> size = ReadFrameSize(path);
    return size ? std::optional(*size) : std::nullopt;
}

float RatioOf(const ImageSize& size) {
    return static_cast<float>(size.width) / static_cast<float>(size.height);
}

/// The ratio nearest to square among those of the more frequent orientation; the mean when none of
/// them is nearer than that; 1 when any is exactly square.
float ClosestToSquare(const std::vector<float>& ratios) {
    const auto landscape =
        std::count_if(ratios.begin(), ratios.end(), [](float r) { return r > 1; });
    const auto portrait = static_cast<std::ptrdiff_t>(ratios.size()) - landscape;
    float sum = 0;
    for (const float ratio : ratios) {
        sum += ratio;
    }
    float best = sum / static_cast<float>(ratios.size());
    for (const float ratio : ratios) {
        const bool eligible = (landscape >= portrait && ratio > 1) ||
                              (portrait >= landscape && ratio < 1) || ratio == 1;
        if (eligible && std::abs(1 - ratio) < std::abs(1 - best)) {
            best = ratio;
        }
    }
    return best;
}

}  // namespace

namespace VideoTools {

ImageSize LargestFrameSize(const QStringList& framePaths) {
    ImageSize largest{0, 0};
    for (const QString& path : framePaths) {
        if (const auto size = SizeOf(path)) {
            largest.width = std::max(largest.width, size->width);
            largest.height = std::max(largest.height, size->height);
        }
    }
    return largest;
}

ImageSize SmallestFrameSize(const QStringList& framePaths) {
    ImageSize smallest{200000, 200000};
    for (const QString& path : framePaths) {
        if (const auto size = SizeOf(path)) {
            smallest.width = std::min(smallest.width, size->width);
            smallest.height = std::min(smallest.height, size->height);
        }
    }
    return smallest;
}

float CommonAspectRatio(const QStringList& framePaths) {
    std::vector<float> ratios;
    for (const QString& path : framePaths) {
        if (const auto size = SizeOf(path)) {
            ratios.push_back(RatioOf(*size));
        }
    }
    return ClosestToSquare(ratios);
}

bool FramesHaveDifferentSizes(const QStringList& framePaths) {
    const auto first = SizeOf(framePaths.front());
    return std::any_of(framePaths.begin() + 1, framePaths.end(),
                       [&](const QString& path) { return SizeOf(path) != first; });
}

}  // namespace VideoTools

namespace ImageTools {

ImageRect RatioCropRect(double width, double height, float ratio) {
    const auto own = static_cast<float>(width / height);
    if (own > ratio) {
        const double cropped = height * static_cast<double>(ratio);
        return {(width - cropped) * 0.5, 0, cropped, height};
    }
    if (own < ratio) {
        const double cropped = width / static_cast<double>(ratio);
        return {0, (height - cropped) * 0.5, width, cropped};
    }
    return {0, 0, width, height};
}

}  // namespace ImageTools
}  // namespace lumirra
