#include "imaging/CropScale.h"
#include "imaging/Effects.h"
#include "imaging/PictureFormat.h"
#include "imaging/kernels/ColorPass.h"

namespace lumirra::ImageTools {

QImage BlendOver(const QImage& base, const QImage& overlay, float mix) {
    QImage below = AsRgba8888(base);
    QImage above = AsRgba8888(overlay);
    if (below.isNull() || above.isNull()) {
        return below;
    }
    if (above.size() != below.size()) {
        above = DrawScaled(above, below.width(), below.height());
    }
    return above.isNull() ? QImage() : BlendPictures(below, above, mix, 1);
}

}  // namespace lumirra::ImageTools
