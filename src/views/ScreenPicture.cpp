#include "views/ScreenPicture.h"

#include <QPainter>
#include <algorithm>
#include <new>
#include <vector>

#include "imaging/PictureFormat.h"

namespace lumirra {
namespace {

/// True when every pixel's alpha is full.
bool AllOpaque(const QImage& image) {
    quint8 all = 255;
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            all &= row[4 * x + 3];
        }
    }
    return all == 255;
}

QRgb Premultiplied(const uchar* rgba) {
    return qPremultiply(qRgba(rgba[0], rgba[1], rgba[2], rgba[3]));
}

/// One sample at the middle of each pixel's footprint.
void Sample(const QImage& image, const QRect& picture, const QRect& window, QImage& out) {
    const QRect part = picture.intersected(window);
    std::vector<int> columns(static_cast<size_t>(part.width()));
    for (int x = 0; x < part.width(); ++x) {
        const qint64 inside = part.x() + x - picture.x();
        columns[static_cast<size_t>(x)] =
            4 * static_cast<int>((2 * inside + 1) * image.width() / (2 * picture.width()));
    }
    for (int y = 0; y < part.height(); ++y) {
        const qint64 inside = part.y() + y - picture.y();
        const uchar* from = image.constScanLine(
            static_cast<int>((2 * inside + 1) * image.height() / (2 * picture.height())));
        auto* to = reinterpret_cast<QRgb*>(out.scanLine(part.y() + y - window.y())) + part.x() -
                   window.x();
        for (size_t x = 0; x < columns.size(); ++x) {
            const uchar* rgba = from + columns[x];
            to[x] = rgba[3] == 255 ? qRgb(rgba[0], rgba[1], rgba[2]) : Premultiplied(rgba);
        }
    }
}

void DrawSmoothly(const QImage& image, const QRect& picture, const QRect& window, QImage& out) {
    QPainter painter(&out);
    painter.translate(-window.topLeft());
    // Where the picture is transparent nothing of what the memory held may shine through.
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (picture.width() < image.width() || picture.height() < image.height()) {
        const QImage premultiplied = Converted(image, QImage::Format_ARGB32_Premultiplied);
        painter.drawImage(picture.topLeft(),
                          Made(premultiplied.scaled(picture.size(), Qt::IgnoreAspectRatio,
                                                    Qt::SmoothTransformation)));
    } else {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(picture, image);
    }
}

}  // namespace

ScreenPicture ScaleForScreen(const QImage& image, const QRect& picture, const QRect& window,
                             bool smooth) try {
    ScreenPicture result;
    if (image.isNull() || picture.isEmpty() || window.isEmpty()) {
        return result;
    }
    result.image = NewPicture(window.size(), QImage::Format_ARGB32_Premultiplied);
    if (!picture.contains(window)) {
        result.image.fill(Qt::transparent);
    }
    if (smooth) {
        DrawSmoothly(image, picture, window, result.image);
    } else {
        Sample(AsRgba8888(image), picture, window, result.image);
    }
    const QRect seen = picture.intersected(window).translated(-window.topLeft());
    result.opaque = AllOpaque(Made(result.image.copy(seen)));
    return result;
} catch (const std::bad_alloc&) {
    return {};
}

}  // namespace lumirra
