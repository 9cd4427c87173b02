#pragma once

#include <QIODevice>
#include <QRgb>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace lumirra {

/// What a BMP file says of itself, brought to one form whatever the age of its header.
struct BmpHeader {
    enum class Packing { Plain, RunLength4, RunLength8, RunLength24 };

    int width = 0;  ///< both at least 1
    int height = 0;
    bool topDown = false;  ///< rows are stored from the upper edge on
    int bits = 0;          ///< of a pixel: 1, 2, 4, 8, 16, 24 or 32
    Packing packing = Packing::Plain;
    std::array<std::uint32_t, 4> masks{};  ///< of red, green, blue, alpha; from 16 bits on
    std::vector<QRgb> palette;             ///< of 2 to the `bits` colours, opaque; up to 8 bits
    qint64 pixels = 0;                     ///< where they begin in the file
};

/// From the device's place on, which is kept. Nothing when the header is damaged or of a
/// kind that is not read (pictures of other formats in a BMP file, fax codes).
std::optional<BmpHeader> ReadBmpHeader(QIODevice& device);

}  // namespace lumirra
