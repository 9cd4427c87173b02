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

/// One clip's first five seconds at ten frames a second, and what a well-regarded encoder makes of
/// these very frames at its default and at its best setting: measured once, in the same terms. On
/// the screencast ssimb was not measured (0) and flick is what we want at most.
struct SampleClip {
    const char* name;
    bool moving;  ///< else the camera stands still
    struct Figures {
        double bytes;
        double ssim;
        double psnrb;
        double ssimb;
        double flick;
    } usual, best;
};
const std::vector<SampleClip>& SampleClips();

/// Writes the clip's frames as PNG files by ffmpeg; their paths in order.
QStringList ExtractFrames(const SampleClip& clip, const QString& mediaFolder,
                          const QString& folder);

}  // namespace lumirra::test
