#include "imaging/Caption.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "imaging/PictureFormat.h"
#include "imaging/RowBands.h"
#include "imaging/caption/CaptionBlock.h"
#include "imaging/kernels/RowKernels.h"

namespace lumirra::ImageTools {

QImage RenderTextLayer(int width, int height, const CaptionStyle& style) {
    if (width < 1 || height < 1) {
        return {};
    }
    QImage layer = NewPicture({width, height}, QImage::Format_RGBA8888);
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
    std::uint8_t* const corner = OwnPixels(result) + block.topLeft.y() * result.bytesPerLine() +
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
