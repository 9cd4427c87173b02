#pragma once

#include <QString>
#include <vector>

#include "imaging/Outcome.h"
#include "imaging/files/FileReplacement.h"
#include "output/FrameSizes.h"

namespace lumirra {

/// An animation to be written from frame files, or estimated.
struct AnimationRequest {
    std::vector<FrameInput> frames;
    QString destination;
    int colorLevels = 256;  ///< levels per channel; 256 leaves the colours alone
    FrameFitMode fitMode = FrameFitMode::CenterOnCanvas;
    double delaySeconds = 0.1;   ///< see `DelayHundredths`
    double loopCount = 0;        ///< 0 writes no loop field
    bool repeatForever = false;  ///< writes a loop field of 0, whatever the loop count
    double quality = 90;         ///< 1..100; fewer bytes below, fewer errors above
    long long maxBytes = 0;      ///< 0: any size
    int maxWidth = 0;            ///< 0: any; wider animations are scaled down to it
    FileKind fileKind = FileKind::UsersOwn;
    int threads = 0;  ///< 0: one for each core; the bytes do not depend on it

    friend bool operator==(const AnimationRequest&, const AnimationRequest&) = default;
};

/// The delay as a file holds it: rounded to hundredths of a second, 1..65535 of them.
int DelayHundredths(double seconds);

struct AnimationResult {
    int frames = 0;  ///< pictures in the file
    int width = 0;
    int height = 0;
    long long bytes = 0;
    double quality = 90;           ///< less than asked for when the size was limited
    double seconds = 0;            ///< of all delays together
    std::vector<Failure> leftOut;  ///< unreadable frames
};

struct AnimationEstimate {
    int frames = 0;  ///< pictures that the file would have
    int width = 0;
    int height = 0;
    long long bytes = 0;  ///< at the quality asked for, whatever the limit
};

}  // namespace lumirra
