#include "output/FrameSizes.h"

#include <algorithm>
#include <cmath>

#include "imaging/files/FileName.h"
#include "output/frames/FrameReader.h"

namespace lumirra {

namespace {

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

std::vector<FrameInput> FramesAt(const QStringList& paths) {
    std::vector<FrameInput> frames;
    frames.reserve(static_cast<std::size_t>(paths.size()));
    for (const QString& path : paths) {
        frames.push_back({path, std::nullopt, std::nullopt});
    }
    return frames;
}

FrameSizes SizesOf(const std::vector<FrameInput>& frames) {
    FrameSizes sizes;
    sizes.reserve(frames.size());
    for (const FrameInput& frame : frames) {
        if (frame.size) {
            sizes.push_back(FactsOf(frame.path).isThere ? frame.size : std::nullopt);
        } else {
            const Outcome<ImageSize> size = ReadFrameSize(frame.path);
            sizes.push_back(size ? std::optional(*size) : std::nullopt);
        }
    }
    return sizes;
}

namespace VideoTools {

ImageSize LargestFrameSize(const FrameSizes& sizes) {
    ImageSize largest{0, 0};
    for (const auto& size : sizes) {
        if (size) {
            largest.width = std::max(largest.width, size->width);
            largest.height = std::max(largest.height, size->height);
        }
    }
    return largest;
}

ImageSize SmallestFrameSize(const FrameSizes& sizes) {
    ImageSize smallest{200000, 200000};
    for (const auto& size : sizes) {
        if (size) {
            smallest.width = std::min(smallest.width, size->width);
            smallest.height = std::min(smallest.height, size->height);
        }
    }
    return smallest;
}

float CommonAspectRatio(const FrameSizes& sizes) {
    std::vector<float> ratios;
    for (const auto& size : sizes) {
        if (size) {
            ratios.push_back(RatioOf(*size));
        }
    }
    return ClosestToSquare(ratios);
}

bool FramesHaveDifferentSizes(const FrameSizes& sizes) {
    return std::any_of(sizes.begin() + 1, sizes.end(),
                       [&](const auto& size) { return size != sizes.front(); });
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
