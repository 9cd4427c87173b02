#pragma once

#include <QImage>
#include <QRect>

namespace lumirra {

struct ScreenPicture {
    QImage image;        ///< as large as the window; RGB32 when opaque, else premultiplied
    bool opaque = true;  ///< inside the picture, and the picture fills the window
};

/// The part of `image` that a window onto it shows. `picture` is the whole picture's rectangle and
/// `window` what is seen of it, both in device pixels of one coordinate system. What the picture
/// does not cover stays transparent. `smooth`: averaged when it shrinks, interpolated when it
/// grows; else one sample a pixel, several times cheaper. No picture where there is no memory for
/// it.
ScreenPicture ScaleForScreen(const QImage& image, const QRect& picture, const QRect& window,
                             bool smooth);

}  // namespace lumirra
