#include "output/size/TooLarge.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "imaging/Words.h"
#include "output/SizeText.h"

namespace lumirra {

namespace {

/// A smaller picture holds more detail in each pixel: bytes fall less than its area.
constexpr double kBytesOverWidth = 1.5;

int FittingWidth(const OversizedAnimation& made) {
    const double share = static_cast<double>(made.limit) / static_cast<double>(made.bytes);
    return static_cast<int>(made.width * std::pow(share, 1 / kBytesOverWidth)) & ~1;
}

/// From the first frame on; the file's last byte comes after them.
int FittingFrames(const OversizedAnimation& made) {
    return static_cast<int>(
        std::upper_bound(made.bytesUpTo.begin(), made.bytesUpTo.end(), made.limit - 1) -
        made.bytesUpTo.begin());
}

}  // namespace

Failure StillTooLarge(const OversizedAnimation& made) {
    QStringList ways;
    if (const int width = FittingWidth(made); width >= 16) {
        ways << Filled(QStringLiteral("a width of about %1 instead of %2"), width, made.width);
    }
    if (const int frames = FittingFrames(made); frames > 0) {
        ways << Filled(QStringLiteral("about %1 frames instead of %2"), frames,
                       made.bytesUpTo.size());
    }
    const QString fitting = ways.isEmpty()
                                ? QStringLiteral("no smaller picture of use would fit")
                                : ways.join(QStringLiteral(", or ")) + QStringLiteral(" would fit");
    return {Failure::Kind::TooLarge,
            QStringLiteral("Even at the lowest quality the %1 takes %2, which is %3 more than the "
                           "limit of %4; %5.")
                .arg(made.format, SizeText(made.bytes), SizeText(made.bytes - made.limit),
                     SizeText(made.limit), fitting),
            {}};
}

}  // namespace lumirra
