#include "project/sequence/CrossFade.h"

#include <cmath>

namespace lumirra {

std::vector<FadedFrame> CrossFade(int count, int length) {
    std::vector<FadedFrame> frames;
    if (count < 2 * length) {
        return frames;
    }
    for (int i = 0; i < length; ++i) {
        frames.push_back({count - length + i, i, (i + 1) / static_cast<double>(length + 1)});
    }
    return frames;
}

QImage Faded(const QImage& from, const QImage& into, double share) {
    constexpr int kWhole = 256;
    if (from.size() != into.size()) {
        return {};
    }
    // Premultiplied, so that what is transparent brings no colour of its own.
    QImage faded = from.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    const QImage other = into.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    if (faded.isNull() || other.isNull()) {
        return {};
    }
    const int weight = static_cast<int>(std::lround(share * kWhole));
    const int bytes = 4 * faded.width();
    for (int y = 0; y < faded.height(); ++y) {
        uchar* to = faded.scanLine(y);
        const uchar* over = other.constScanLine(y);
        for (int i = 0; i < bytes; ++i) {
            to[i] = static_cast<uchar>((to[i] * (kWhole - weight) + over[i] * weight + kWhole / 2) /
                                       kWhole);
        }
    }
    return faded.convertToFormat(QImage::Format_RGBA8888);
}

}  // namespace lumirra
