#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <stop_token>
#include <vector>

#include "imaging/Outcome.h"
#include "output/GifSizes.h"

namespace lumirra {

struct GifRequest {
    QStringList framePaths;
    QString destination;
    int colorLevels = 256;  ///< levels per channel; 256 leaves the colours alone
    FrameFitMode fitMode = FrameFitMode::CenterOnCanvas;
    double delaySeconds = 0.1;   ///< rounded to hundredths, 1..65535 of them
    double loopCount = 0;        ///< 0 writes no loop field
    bool repeatForever = false;  ///< writes a loop field of 0, whatever the loop count
    double quality = 90;         ///< 1..100; fewer bytes below, fewer errors above
    long long maxBytes = 0;      ///< 0: any size
    int threads = 0;             ///< 0: one for each core; the bytes do not depend on it
};

struct GifResult {
    int frames = 0;  ///< images in the file
    int width = 0;
    int height = 0;
    long long bytes = 0;
    double quality = 90;           ///< less than asked for when the size was limited
    std::vector<Failure> leftOut;  ///< unreadable frames
};

/// Writes one animated GIF: one full-canvas image for each readable entry. The file at
/// `destination` is replaced only when the new one is complete; on failure or stop it is untouched.
/// With `maxBytes` the quality is lowered as far as needed: the frames are encoded several times,
/// and a file that the limit binds is at most 4 % smaller than it. When even quality 1 is too much,
/// the failure (`TooLarge`) says by how much and what would fit.
/// `onProgress`(done, total) is called on the calling thread; `total` grows when the frames have to
/// be encoded once more.
Outcome<GifResult> WriteGif(const GifRequest& request, const std::stop_token& stop,
                            const std::function<void(int, int)>& onProgress);

namespace VideoTools {

/// `WriteGif` for callers that look at the file alone: the old file is deleted first (a failure
/// prints "Remove failed: " and the reason on standard output), and none is left when it fails.
void CreateGif(const QStringList& framePaths, const QString& destination, int colorLevels,
               FrameFitMode fitMode, double delaySeconds, double loopCount);

}  // namespace VideoTools
}  // namespace lumirra
