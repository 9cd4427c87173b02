#include "imaging/kernels/ColorPass.h"

#include "imaging/PictureFormat.h"
#include "imaging/RowBands.h"
#include "imaging/kernels/RowKernels.h"

namespace lumirra {

QImage ApplyColorSteps(const QImage& image, const ColorSteps& steps,
                       const std::optional<Vignette>& vignette, int threads) {
    if (steps.IsNeutral() && !vignette) {
        return image;
    }
    QImage result = NewPicture(image.size(), QImage::Format_RGBA8888);
    const auto n = static_cast<std::size_t>(image.width());
    uchar* bits = result.bits();
    const qsizetype bytesPerLine = result.bytesPerLine();
    ForEachRowBand(image.height(), threads, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            const VignetteRow row = vignette ? RowOf(*vignette, y) : VignetteRow{};
            Kernels().color(steps, vignette ? &row : nullptr, image.constScanLine(y),
                            bits + bytesPerLine * y, n);
        }
    });
    return result;
}

}  // namespace lumirra
