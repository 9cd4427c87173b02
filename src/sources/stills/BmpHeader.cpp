#include "sources/stills/BmpHeader.h"

#include <QtEndian>
#include <algorithm>
#include <cstdlib>
#include <limits>

namespace lumirra {
namespace {

constexpr qint64 kFileHeader = 14;
constexpr std::uint32_t kCoreSize = 12;  // OS/2 1
constexpr std::uint32_t kInfoSize = 40;
constexpr std::uint32_t kOs2Size = 64;
constexpr std::uint32_t kMaxSize = 1024;  // the largest in use has 124
constexpr qint64 kMasksAndPalette = 16 + 4 * 256;

/// Numbers at places in the file's start; 0 where it has ended.
class Start {
  public:
    explicit Start(QIODevice& device) {
        device.peek(reinterpret_cast<char*>(bytes_.data()), static_cast<qint64>(bytes_.size()));
    }
    std::uint32_t Long(qint64 at) const { return Number<std::uint32_t>(at); }
    std::uint16_t Short(qint64 at) const { return Number<std::uint16_t>(at); }
    std::uint8_t Byte(qint64 at) const { return Number<std::uint8_t>(at); }

  private:
    template <typename T>
    T Number(qint64 at) const {
        const auto place = static_cast<std::size_t>(at);
        return place + sizeof(T) <= bytes_.size() ? qFromLittleEndian<T>(bytes_.data() + place)
                                                  : T{};
    }
    std::array<uchar, kFileHeader + kMaxSize + kMasksAndPalette> bytes_{};
};

/// Width and height as stored; a height below zero: from the upper edge on.
bool TakeSize(const Start& start, std::uint32_t size, BmpHeader& header) {
    const bool core = size == kCoreSize;
    const qint64 width = core ? start.Short(18) : static_cast<std::int32_t>(start.Long(18));
    const qint64 height = core ? start.Short(20) : static_cast<std::int32_t>(start.Long(22));
    if (width < 1 || height == 0 || std::abs(height) > std::numeric_limits<int>::max()) {
        return false;
    }
    header.width = static_cast<int>(width);
    header.height = static_cast<int>(std::abs(height));
    header.topDown = height < 0;
    header.bits = start.Short(core ? 24 : 28);
    constexpr std::array kKnown{1, 2, 4, 8, 16, 24, 32};
    return std::find(kKnown.begin(), kKnown.end(), header.bits) != kKnown.end();
}

/// How the pixels are packed; the bytes that masks take after the header, or nothing when this is
/// not read.
std::optional<qint64> TakePacking(const Start& start, std::uint32_t size, BmpHeader& header) {
    using Packing = BmpHeader::Packing;
    const std::uint32_t code = size >= 20 ? start.Long(30) : 0;
    if (header.bits == 16) {
        header.masks = {0x7C00, 0x3E0, 0x1F, 0};
    } else if (header.bits > 16) {
        header.masks = {0xFF0000, 0xFF00, 0xFF, 0};
    }
    if (code == 0) {
        return 0;
    }
    if ((code == 1 && header.bits == 8) || (code == 2 && header.bits == 4)) {
        header.packing = code == 1 ? Packing::RunLength8 : Packing::RunLength4;
        return 0;
    }
    if (size == kOs2Size) {
        header.packing = Packing::RunLength24;
        return code == 4 && header.bits == 24 ? std::optional<qint64>(0) : std::nullopt;
    }
    const bool masked = (code == 3 || code == 6) && (header.bits == 16 || header.bits == 32);
    if (!masked) {
        return std::nullopt;
    }
    const bool alpha = code == 6 || size >= 56;
    for (std::size_t channel = 0; channel < (alpha ? 4 : 3); ++channel) {
        header.masks.at(channel) = start.Long(54 + 4 * static_cast<qint64>(channel));
    }
    return size > kInfoSize ? 0 : alpha ? 16 : 12;
}

/// Colours that the file does not have are black. The bytes that the others take in it.
qint64 TakePalette(const Start& start, std::uint32_t size, qint64 at, BmpHeader& header) {
    const std::uint32_t all = 1U << header.bits;
    const qint64 bytes = size == kCoreSize ? 3 : 4;
    const std::uint32_t used = size >= 36 ? start.Long(46) : 0;
    qint64 stored = used == 0 ? all : std::min(used, all);
    if (header.pixels > at) {
        stored = std::min(stored, (header.pixels - at) / bytes);
    }
    header.palette.assign(all, qRgb(0, 0, 0));
    for (qint64 i = 0; i < stored; ++i) {
        const qint64 entry = at + i * bytes;
        header.palette[static_cast<std::size_t>(i)] =
            qRgb(start.Byte(entry + 2), start.Byte(entry + 1), start.Byte(entry));
    }
    return stored * bytes;
}

}  // namespace

std::optional<BmpHeader> ReadBmpHeader(QIODevice& device) {
    const Start start(device);
    const std::uint32_t size = start.Long(kFileHeader);
    BmpHeader header;
    if ((size != kCoreSize && size < 16) || size > kMaxSize || !TakeSize(start, size, header)) {
        return std::nullopt;
    }
    const std::optional<qint64> masks = TakePacking(start, size, header);
    if (!masks) {
        return std::nullopt;
    }
    qint64 end = kFileHeader + size + *masks;
    header.pixels = start.Long(10);
    if (header.bits <= 8) {
        end += TakePalette(start, size, end, header);
    }
    // A place inside the headers is none at all: then the pixels follow at once.
    if (header.pixels < kFileHeader + size) {
        header.pixels = end;
    }
    return header;
}

}  // namespace lumirra
