#include "output/size/TooLarge.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "output/SizeText.h"

namespace lumirra {

namespace {

/// A smaller picture holds more detail in each pixel: bytes fall less than its area.
constexpr double kBytesOverWidth = 1.5;

int FittingWidth(const OversizedGif& gif) {
    const double share = static_cast<double>(gif.limit) / static_cast<double>(gif.bytes);
    return static_cast<int>(gif.width * std::pow(share, 1 / kBytesOverWidth)) & ~1;
}

/// From the first frame on; the file's last byte comes after them.
int FittingFrames(const OversizedGif& gif) {
    return static_cast<int>(
        std::upper_bound(gif.bytesUpTo.begin(), gif.bytesUpTo.end(), gif.limit - 1) -
        gif.bytesUpTo.begin());
}

}  // namespace

Failure StillTooLarge(const OversizedGif& gif) {
    QStringList ways;
    if (const int width = FittingWidth(gif); width >= 16) {
        ways << QStringLiteral("a width of about %1 instead of %2").arg(width).arg(gif.width);
    }
    if (const int frames = FittingFrames(gif); frames > 0) {
        ways << QStringLiteral("about %1 frames instead of %2")
                    .arg(frames)
                    .arg(gif.bytesUpTo.size());
    }
    const QString fitting = ways.isEmpty()
                                ? QStringLiteral("no smaller picture of use would fit")
                                : ways.join(QStringLiteral(", or ")) + QStringLiteral(" would fit");
    return {Failure::Kind::TooLarge,
            QStringLiteral("Even at the lowest quality the GIF takes %1, which is %2 more than the "
                           "limit of %3; %4.")
                .arg(SizeText(gif.bytes), SizeText(gif.bytes - gif.limit), SizeText(gif.limit),
                     fitting),
            {}};
}

}  // namespace lumirra
