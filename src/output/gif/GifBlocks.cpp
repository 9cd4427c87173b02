#include "output/gif/GifBlocks.h"

#include <algorithm>
#include <string_view>

namespace lumirra::gif {

namespace {

using Bytes = std::vector<std::uint8_t>;

void PutWord(Bytes& bytes, int value) {
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(value >> 8 & 0xFF));
}

void PutText(Bytes& bytes, std::string_view text) {
    for (const char letter : text) {
        bytes.push_back(static_cast<std::uint8_t>(letter));
    }
}

/// Colour tables hold 2^(field + 1) entries.
int TableField(std::size_t colors) {
    int field = 0;
    while ((std::size_t{2} << static_cast<unsigned>(field)) < colors) {
        ++field;
    }
    return field;
}

void PutTable(Bytes& bytes, const std::vector<Rgba>& palette, int field) {
    const std::size_t entries = std::size_t{2} << static_cast<unsigned>(field);
    for (std::size_t i = 0; i < entries; ++i) {
        const Rgba color = i < palette.size() ? palette[i] : Rgba{};
        bytes.push_back(color.r);
        bytes.push_back(color.g);
        bytes.push_back(color.b);
    }
}

/// The transparent index is an entry of the table as well.
std::size_t TableEntries(const ImageBlock& image) {
    const std::size_t colors = image.localPalette.size();
    return image.transparent ? std::max<std::size_t>(colors, *image.transparent + 1U) : colors;
}

}  // namespace

Bytes FileHeader(int width, int height, const std::vector<Rgba>& palette,
                 std::optional<std::uint16_t> loops) {
    Bytes bytes;
    PutText(bytes, "GIF89a");
    PutWord(bytes, width);
    PutWord(bytes, height);
    const int field = TableField(palette.size());
    constexpr int kEightBitsPerChannel = 7 << 4;
    bytes.push_back(static_cast<std::uint8_t>(0x80 | kEightBitsPerChannel | field));
    bytes.push_back(0);  // background: the first colour; readers clear to transparent
    bytes.push_back(0);  // square pixels
    PutTable(bytes, palette, field);
    if (loops) {
        PutText(bytes, "\x21\xFF\x0BNETSCAPE2.0\x03\x01");
        PutWord(bytes, *loops);
        bytes.push_back(0);
    }
    return bytes;
}

Bytes ImageHeader(const ImageBlock& image) {
    Bytes bytes;
    PutText(bytes, "\x21\xF9\x04");
    const unsigned disposal = static_cast<unsigned>(image.disposal) << 2U;
    bytes.push_back(static_cast<std::uint8_t>(disposal | (image.transparent ? 1U : 0U)));
    PutWord(bytes, image.delayHundredths);
    bytes.push_back(image.transparent.value_or(0));
    bytes.push_back(0);
    bytes.push_back(0x2C);
    PutWord(bytes, 0);
    PutWord(bytes, 0);
    PutWord(bytes, image.width);
    PutWord(bytes, image.height);
    if (image.localPalette.empty()) {
        bytes.push_back(0);
        return bytes;
    }
    const int field = TableField(TableEntries(image));
    bytes.push_back(static_cast<std::uint8_t>(0x80 | field));
    PutTable(bytes, image.localPalette, field);
    return bytes;
}

}  // namespace lumirra::gif
