#include "imaging/kernels/ColorPass.h"

#include <algorithm>
#include <cmath>

#include "imaging/RowBands.h"
#include "imaging/kernels/RowKernels.h"

namespace lumirra {

namespace {

/// A new picture of the size of `image`, its rows filled by make(y, row).
template <typename Make>
QImage MakeRows(const QImage& image, int threads, const Make& make) {
    QImage result(image.size(), QImage::Format_RGBA8888);
    if (result.isNull()) {
        return {};
    }
    uchar* bits = result.bits();
    const qsizetype bytesPerLine = result.bytesPerLine();
    ForEachRowBand(image.height(), threads, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            make(y, bits + bytesPerLine * y);
        }
    });
    return result;
}

}  // namespace

QImage ApplyColorSteps(const QImage& image, const ColorSteps& steps,
                       const std::optional<Vignette>& vignette, int threads) {
    if (steps.IsNeutral() && !vignette) {
        return image;
    }
    const auto n = static_cast<std::size_t>(image.width());
    return MakeRows(image, threads, [&](int y, uchar* out) {
        const VignetteRow row = vignette ? RowOf(*vignette, y) : VignetteRow{};
        Kernels().color(steps, vignette ? &row : nullptr, image.constScanLine(y), out, n);
    });
}

QImage BlendPictures(const QImage& base, const QImage& overlay, float mix, int threads) {
    const float part = std::isnan(mix) ? 0 : std::clamp(mix, -1e6F, 1e6F);
    const auto n = static_cast<std::size_t>(base.width());
    return MakeRows(base, threads, [&](int y, uchar* out) {
        Kernels().blend(base.constScanLine(y), overlay.constScanLine(y), part, out, n);
    });
}

}  // namespace lumirra
