#include "imaging/DisplayTransform.h"

#include <QTransform>
#include <algorithm>
#include <cmath>
#include <utility>

#include "imaging/PictureFormat.h"

namespace lumirra {

QSize DisplayTransform::StretchedSize(const QSize& stored) const {
    const auto width = static_cast<int>(std::lround(stored.width() * pixelAspect));
    return {std::max(1, width), stored.height()};
}

QImage DisplayTransform::Upright(QImage stretched) const {
    if (stretched.isNull()) {
        return stretched;
    }
    if (flipped) {
        stretched = Made(std::move(stretched).mirrored(true, false));
    }
    if (quarterTurns == 2) {
        return Made(std::move(stretched).mirrored(true, true));
    }
    return quarterTurns == 0
               ? stretched
               : Made(stretched.transformed(QTransform().rotate(90.0 * quarterTurns)));
}

}  // namespace lumirra
