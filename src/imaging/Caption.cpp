#include "imaging/Caption.h"

#include <QFontDatabase>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "imaging/PictureFormat.h"
#include "imaging/RowBands.h"
#include "imaging/caption/CaptionBlock.h"
#include "imaging/kernels/RowKernels.h"

namespace lumirra::ImageTools {

QString FontNameForIndex(int index) {
    const QStringList& names = CaptionFontNames();
    if (index < 0 || index >= names.size()) {
        return {};
    }
    const QStringList installed = QFontDatabase::families();
    return installed.isEmpty() || installed.contains(names[index]) ? names[index]
                                                                   : installed.first();
}

QImage RenderTextLayer(int width, int height, const CaptionStyle& style) {
    QImage layer(width, height, QImage::Format_RGBA8888);
    if (layer.isNull()) {
        return {};
    }
    layer.fill(Qt::transparent);
    const CaptionBlock block = PaintCaption(width, height, style);
    for (int y = 0; y < block.pixels.height(); ++y) {
        std::memcpy(layer.scanLine(block.topLeft.y() + y) + qsizetype{4} * block.topLeft.x(),
                    block.pixels.constScanLine(y),
                    static_cast<std::size_t>(block.pixels.width()) * 4);
    }
    return layer;
}

QImage DrawTextOverlay(const QImage& image, const CaptionStyle& style, float opacity, int threads) {
    QImage result = AsRgba8888(image);
    if (result.isNull() || !(opacity > 0)) {
        return result;
    }
    const CaptionBlock block = PaintCaption(result.width(), result.height(), style);
    if (block.pixels.isNull()) {
        return result;
    }
    const float mix = std::min(opacity, 1.0F);
    std::uint8_t* const corner = result.bits() + block.topLeft.y() * result.bytesPerLine() +
                                 qsizetype{4} * block.topLeft.x();
    const qsizetype stride = result.bytesPerLine();
    // Outside the block the layer is transparent, which leaves the picture as it is.
    ForEachRowBand(block.pixels.height(), threads, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            std::uint8_t* row = corner + y * stride;
            Kernels().blend(row, block.pixels.constScanLine(y), mix, row,
                            static_cast<std::size_t>(block.pixels.width()));
        }
    });
    return result;
}

}  // namespace lumirra::ImageTools
