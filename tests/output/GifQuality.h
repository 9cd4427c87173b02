#pragma once

#include <QImage>
#include <QStringList>
#include <vector>

namespace lumirra::test {

/// How well a GIF shows its frames, each figure the mean over the images compared.
struct GifQuality {
    double psnr = 0;   ///< dB
    double psnrb = 0;  ///< dB after a slight blur of both, which is how the eye sees dither
    double ssim = 0;   ///< structural similarity of the luma
    double ssimb = 0;  ///< the same after the blur
    double flick = 0;  ///< levels that a pixel changes by where its source stands still
};

/// Compares each image with its frame; the sizes must agree.
GifQuality CompareImages(const std::vector<QImage>& images, const QStringList& frames);

}  // namespace lumirra::test
