#pragma once

#include <QColorTransform>
#include <QImage>

namespace lumirra {

// Allocating and converting pictures. Running out of memory throws std::bad_alloc, so that a null
// picture always means "no picture".

/// A picture to be filled; both sides at least 1.
QImage NewPicture(const QSize& size, QImage::Format format);

/// The result of an operation of the toolkit on a picture, which is null only for want of memory.
QImage Made(QImage picture);

/// The pixels to write to, copied first when other pictures share them.
uchar* OwnPixels(QImage& picture);

/// The picture in that format, as the toolkit converts it; a null one stays null. The toolkit would
/// wait for threads of its own, for ever where the system has none left: here the work is done on
/// the calling thread and on up to `threads` others, as far as the system gives any.
QImage Converted(QImage picture, QImage::Format format, int threads = 1);

/// Colours of a picture of Format_RGBA8888 or Format_RGBA64 by the transform; threads as above. The
/// label of its colours stays as it is.
void TransformColors(QImage& picture, const QColorTransform& transform, int threads);

/// The picture in the format the operations work on: RGBA8888, straight alpha, device pixel
/// ratio 1. A picture that has it already is given back without a copy of its pixels.
QImage AsRgba8888(const QImage& image);

}  // namespace lumirra
