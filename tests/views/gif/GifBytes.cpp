#include "GifBytes.h"

namespace lumirra::test {
namespace {

QByteArray Word(int value) {
    return QByteArray().append(static_cast<char>(value)).append(static_cast<char>(value >> 8));
}

/// With codes of 8 bits a new dictionary is due before a 9th is needed.
QByteArray Codes(const GifPart& part) {
    constexpr int kClear = 128;
    constexpr int kEnd = 129;
    constexpr int kMostBetween = 120;
    QByteArray codes;
    for (int i = 0; i < part.width * part.height; ++i) {
        if (i % kMostBetween == 0) {
            codes.append(static_cast<char>(kClear));
        }
        codes.append(static_cast<char>(part.color));
    }
    codes.append(static_cast<char>(kEnd));
    QByteArray blocks(1, 7);
    for (qsizetype at = 0; at < codes.size(); at += 255) {
        const QByteArray block = codes.mid(at, 255);
        blocks.append(static_cast<char>(block.size())).append(block);
    }
    return blocks.append('\0');
}

}  // namespace

QByteArray GifBytes(int width, int height, std::optional<int> repeats,
                    const QList<GifPart>& parts) {
    QByteArray bytes = "GIF89a" + Word(width) + Word(height) + QByteArray::fromHex("f60000");
    for (int i = 0; i < 128; ++i) {
        for (int bit = 0; bit < 3; ++bit) {
            bytes.append((i >> bit & 1) != 0 ? '\xff' : '\0');
        }
    }
    if (repeats) {
        bytes += QByteArray::fromHex("21ff0b") + "NETSCAPE2.0" + QByteArray::fromHex("0301") +
                 Word(*repeats) + '\0';
    }
    for (const GifPart& part : parts) {
        bytes += QByteArray::fromHex("21f904");
        bytes.append(static_cast<char>(part.disposal << 2 | (part.transparent ? 1 : 0)));
        bytes += Word(part.delay);
        bytes.append(static_cast<char>(part.color)).append('\0');
        bytes += ',' + Word(part.x) + Word(part.y) + Word(part.width) + Word(part.height) + '\0' +
                 Codes(part);
    }
    return bytes + ';';
}

}  // namespace lumirra::test
