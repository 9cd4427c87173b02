#include "imaging/PixelLimits.h"

#include <QImageReader>

namespace lumirra {

void AllowLargestSources() {
    constexpr std::int64_t kBytesPerPixel = 8;  // four channels of 16 bits
    constexpr std::int64_t kMegabyte = 1 << 20;
    QImageReader::setAllocationLimit(
        static_cast<int>(kMaxSourcePixels * kBytesPerPixel / kMegabyte) + 1);
}

}  // namespace lumirra
