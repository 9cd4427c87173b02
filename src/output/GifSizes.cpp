#include "output/GifSizes.h"

namespace lumirra::ImageTools {

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

}  // namespace lumirra::ImageTools
