#include "imaging/CropGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lumirra::ImageTools {

ImageRect AspectCropRect(double width, double height, AspectRatio aspect) {
    constexpr std::array<double, 4> kRatios = {1.0, 4.0 / 3.0, 3.0 / 2.0, 16.0 / 9.0};
    const auto index = static_cast<std::size_t>(aspect);
    if (index >= kRatios.size() || !(width > 0) || !(height > 0)) {
        return {};
    }
    const bool portrait = static_cast<float>(width / height) < 1.0F;
    if (aspect == AspectRatio::Square) {
        return portrait ? ImageRect{0, (height - width) / 2, width, width}
                        : ImageRect{(width - height) / 2, 0, height, height};
    }
    const double landscapeRatio = kRatios[index];
    const double ratio = portrait ? 1.0 / landscapeRatio : landscapeRatio;
    const double fullHeightWidth = height * ratio;
    if (fullHeightWidth <= width) {
        return {(width - fullHeightWidth) / 2, 0, fullHeightWidth, height};
    }
    const double fullWidthHeight = width / ratio;
    return {0, (height - fullWidthHeight) / 2, width, fullWidthHeight};
}

ImageRect CustomCropRect(double width, double height, CropUnit unit, float x, float y,
                         float cropWidth, float cropHeight) {
    const auto w = static_cast<float>(width);
    const auto h = static_cast<float>(height);
    switch (unit) {
        case CropUnit::Percent:
            return {x * w / 100.0F, y * h / 100.0F, cropWidth * w / 100.0F,
                    cropHeight * h / 100.0F};
        case CropUnit::Pixels:
            return {x, y, cropWidth, cropHeight};
    }
    return {};
}

ImageRect CropRectForImage(double width, double height, const EffectSettings& settings) {
    if (settings.autoCropOn) {
        return AspectCropRect(width, height, settings.aspectRatio);
    }
    if (settings.customCropOn) {
        return CustomCropRect(width, height, settings.customCropUnit, settings.cropX,
                              settings.cropY, settings.cropWidth, settings.cropHeight);
    }
    return {};
}

ImageSize VisibleCropSize(const ImageRect& rect, double width, double height) {
    const double w = std::min(rect.x + rect.width, width) - std::max(rect.x, 0.0);
    const double h = std::min(rect.y + rect.height, height) - std::max(rect.y, 0.0);
    if (!(w > 0) || !(h > 0)) {
        return {};
    }
    return {w, h};
}

ImageSize ScaledFrameSize(double width, double height, const EffectSettings& settings,
                          float resizePercent) {
    if (!settings.autoCropOn && !settings.customCropOn) {
        return {width, height};
    }
    const ImageRect rect = CropRectForImage(width, height, settings);
    const ImageSize crop = settings.autoCropOn ? ImageSize{rect.width, rect.height}
                                               : VisibleCropSize(rect, width, height);
    const auto scaled = [resizePercent](double side) {
        return static_cast<double>(std::round(static_cast<float>(side) * resizePercent / 100.0F));
    };
    return {scaled(crop.width), scaled(crop.height)};
}

}  // namespace lumirra::ImageTools
