#include "imaging/PictureFormat.h"

#include <QColorSpace>
#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "imaging/RowBands.h"

namespace lumirra {
namespace {

/// The toolkit takes other threads for more than twice as many pixels.
constexpr int kStripPixels = 1 << 16;

/// Calls fn(strip, y) for strips that show the rows of `picture` from y on, without a copy.
template <typename Fn>
void ForEachStrip(const QImage& picture, const uchar* pixels, int threads, const Fn& fn) {
    const int rows = std::max(1, kStripPixels / picture.width());
    ForEachRowBand(picture.height(), threads, [&](int first, int end) {
        for (int y = first; y < end; y += rows) {
            QImage strip(pixels + picture.bytesPerLine() * y, picture.width(),
                         std::min(rows, end - y), picture.bytesPerLine(), picture.format());
            if (picture.colorCount() > 0) {
                strip.setColorTable(picture.colorTable());
            }
            fn(std::move(strip), y);
        }
    });
}

/// Into rows that lie `stride` apart from `to` on.
void CopyRows(const QImage& strip, uchar* to, qsizetype stride) {
    const auto bytes = static_cast<std::size_t>(strip.width()) * strip.depth() / 8;
    for (int y = 0; y < strip.height(); ++y) {
        std::memcpy(to + stride * y, strip.constScanLine(y), bytes);
    }
}

}  // namespace

QImage NewPicture(const QSize& size, QImage::Format format) {
    return Made(QImage(size, format));
}

QImage Made(QImage picture) {
    if (picture.isNull()) {
        throw std::bad_alloc();
    }
    return picture;
}

uchar* OwnPixels(QImage& picture) {
    picture.detach();
    if (picture.isNull()) {
        throw std::bad_alloc();
    }
    return picture.bits();
}

QImage Converted(QImage picture, QImage::Format format, int threads) {
    if (picture.isNull() || picture.format() == format) {
        return picture;
    }
    // In place where that is possible: a large picture is not held twice.
    const bool inPlace = picture.depth() == QImage::toPixelFormat(format).bitsPerPixel() &&
                         picture.isDetached() && picture.colorCount() == 0;
    QImage result = inPlace ? std::exchange(picture, {}) : NewPicture(picture.size(), format);
    const QImage& from = inPlace ? result : picture;
    uchar* const to = OwnPixels(result);
    const qsizetype stride = result.bytesPerLine();
    ForEachStrip(from, inPlace ? to : picture.constBits(), threads, [&](QImage strip, int y) {
        CopyRows(Made(std::move(strip).convertToFormat(format)), to + stride * y, stride);
    });
    if (inPlace) {
        result.reinterpretAsFormat(format);
    } else {
        result.setDevicePixelRatio(picture.devicePixelRatio());
        result.setColorSpace(picture.colorSpace());
    }
    return result;
}

void TransformColors(QImage& picture, const QColorTransform& transform, int threads) {
    uchar* const to = OwnPixels(picture);
    const qsizetype stride = picture.bytesPerLine();
    const QImage::Format format = picture.format();
    ForEachStrip(picture, to, threads, [&](QImage strip, int y) {
        strip.applyColorTransform(transform);
        const QImage transformed = Made(std::move(strip));
        CopyRows(Made(transformed.convertToFormat(format)), to + stride * y, stride);
    });
}

QImage AsRgba8888(const QImage& image) {
    QImage result = Converted(image, QImage::Format_RGBA8888);
    if (!result.isNull() && result.devicePixelRatio() != 1) {
        OwnPixels(result);
        result.setDevicePixelRatio(1);
    }
    return result;
}

}  // namespace lumirra
