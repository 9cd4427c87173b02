#pragma once

#include <QImage>
#include <QSize>

namespace lumirra {

/// How the stored pictures of a video are stretched, flipped and turned, in this order, to be
/// shown. Still pictures and the player go by the same one.
struct DisplayTransform {
    double pixelAspect = 1;  ///< a stored pixel's width by its height
    bool flipped = false;    ///< left and right exchanged
    int quarterTurns = 0;    ///< clockwise, 0..3

    /// The stored picture with square pixels, not yet turned: its height stays.
    QSize StretchedSize(const QSize& stored) const;
    /// As shown.
    QSize ShownSize(const QSize& stored) const { return Turned(StretchedSize(stored)); }
    /// A size before the turn for one after it, and the other way round.
    QSize Turned(const QSize& size) const {
        return quarterTurns % 2 == 0 ? size : size.transposed();
    }
    /// Flips and turns a picture that has been stretched.
    QImage Upright(QImage stretched) const;
};

}  // namespace lumirra
