#pragma once

#include <QImage>

namespace lumirra {

/// The picture in the format the operations work on: RGBA8888, straight alpha, device pixel
/// ratio 1. A picture that has it already is given back without a copy of its pixels.
inline QImage AsRgba8888(const QImage& image) {
    QImage result = image.convertToFormat(QImage::Format_RGBA8888);
    if (!result.isNull() && result.devicePixelRatio() != 1) {
        result.setDevicePixelRatio(1);
    }
    return result;
}

}  // namespace lumirra
