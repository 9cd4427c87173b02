#include "imaging/files/PixelDeflate.h"

#include <algorithm>
#include <cstring>

#include "imaging/files/Adler32.h"
#include "imaging/files/HuffmanCode.h"

namespace lumirra {
namespace {

constexpr int kEndOfBlock = 256;
constexpr int kLongestMatch =
    64;  // pixels: 256 bytes, the longest multiple of four a match can have
constexpr std::size_t kPixelBytes = 4;

/// How deflate sends a match of 4 * pixels bytes: symbol, then extra bits.
struct LengthCode {
    std::uint16_t symbol = 0;
    std::uint8_t extraBits = 0;
    std::uint8_t extra = 0;
};

constexpr std::array<LengthCode, kLongestMatch + 1> MakeLengthCodes() {
    // RFC 1951, 3.2.5: eight codes without extra bits, then four for each number of extra bits.
    std::array<LengthCode, kLongestMatch + 1> codes{};
    for (int pixels = 1; pixels <= kLongestMatch; ++pixels) {
        const int length = pixels * 4;
        int base = 3;
        int symbol = 257;
        int extraBits = 0;
        for (;; ++symbol) {
            extraBits = symbol < 265 ? 0 : (symbol - 261) / 4;
            if (length < base + (1 << extraBits)) {
                break;
            }
            base += 1 << extraBits;
        }
        codes[static_cast<std::size_t>(pixels)] = {static_cast<std::uint16_t>(symbol),
                                                   static_cast<std::uint8_t>(extraBits),
                                                   static_cast<std::uint8_t>(length - base)};
    }
    return codes;
}
constexpr auto kLengthCodes = MakeLengthCodes();

std::uint32_t PixelAt(const std::uint8_t* bytes) {
    std::uint32_t pixel;
    std::memcpy(&pixel, bytes, sizeof pixel);
    return pixel;
}

/// Tells the receiver of every pixel literal and of every run that repeats the pixel before it.
template <typename OnByte, typename OnPixel, typename OnRun>
void WalkRows(std::span<const std::uint8_t> rows, int pixels, OnByte onByte, OnPixel onPixel,
              OnRun onRun) {
    const std::size_t rowBytes = 1 + static_cast<std::size_t>(pixels) * kPixelBytes;
    for (std::size_t start = 0; start < rows.size(); start += rowBytes) {
        const std::uint8_t* at = rows.data() + start;
        const std::uint8_t* const end = at + rowBytes;
        onByte(*at++);
        onPixel(at);
        std::uint32_t before = PixelAt(at);
        at += kPixelBytes;
        while (at < end) {
            const std::uint32_t pixel = PixelAt(at);
            if (pixel != before) {
                onPixel(at);
                before = pixel;
                at += kPixelBytes;
                continue;
            }
            int run = 1;
            at += kPixelBytes;
            while (at < end && run < kLongestMatch && PixelAt(at) == pixel) {
                ++run;
                at += kPixelBytes;
            }
            onRun(run);
        }
    }
}

using Counts = std::array<std::uint32_t, kLiteralSymbols>;

/// By the rows counted, which speak for those between them; every symbol is given a code.
Counts EstimateCounts(std::span<const std::uint8_t> rows, int pixels) {
    constexpr std::size_t kRowsApart = 4;
    const std::size_t rowBytes = 1 + static_cast<std::size_t>(pixels) * kPixelBytes;
    // A table for each byte of a pixel: equal neighbours would wait for each other's increment.
    std::array<Counts, kPixelBytes> counts{};
    for (std::size_t at = 0; at < rows.size(); at += kRowsApart * rowBytes) {
        WalkRows(
            rows.subspan(at, rowBytes), pixels, [&](std::uint8_t byte) { ++counts[0][byte]; },
            [&](const std::uint8_t* pixel) {
                for (std::size_t i = 0; i < kPixelBytes; ++i) {
                    ++counts[i][pixel[i]];
                }
            },
            [&](int run) { ++counts[0][kLengthCodes[static_cast<std::size_t>(run)].symbol]; });
    }
    for (std::size_t symbol = 0; symbol < counts[0].size(); ++symbol) {
        counts[0][symbol] += counts[1][symbol] + counts[2][symbol] + counts[3][symbol];
        counts[0][symbol] = std::max(counts[0][symbol], 1U);
    }
    return counts[0];
}

/// Bits into a buffer that is large enough, lowest first.
struct BitWriter {
    std::uint8_t* at;
    std::uint64_t bits;
    unsigned count;

    /// At most 56 bits between two `Flush`, so that fewer than 64 wait.
    void Put(std::uint64_t value, unsigned length) {
        bits |= value << count;
        count += length;
    }
    /// Leaves fewer than eight bits.
    void Flush() {
        std::memcpy(at, &bits, sizeof bits);
        at += count / 8;
        bits >>= count & ~7U;
        count &= 7;
    }
};

void PutHeader(BitWriter& writer, const HuffmanCode& code, bool last) {
    constexpr int kDistances = 4;  // of which the fourth, four bytes back, is the only one used
    writer.Put(last ? 1 : 0, 1);
    writer.Put(2, 2);  // a block with its own codes
    writer.Put(kLiteralSymbols - 257, 5);
    writer.Put(kDistances - 1, 5);
    writer.Put(19 - 4, 4);
    // The code lengths are sent in a code where 0 to 15 have four bits each. The order of the
    // nineteen is 16, 17, 18, 0, 8, ...; the first three, which repeat, are not used.
    for (int i = 0; i < 19; ++i) {
        writer.Put(i < 3 ? 0 : 4, 3);
        writer.Flush();
    }
    const auto putLength = [&](unsigned length) {
        // A four-bit code is its own value, highest bit first.
        const unsigned reversed =
            (length & 1) << 3 | (length & 2) << 1 | (length & 4) >> 1 | (length & 8) >> 3;
        writer.Put(reversed, 4);
        writer.Flush();
    };
    for (const std::uint8_t length : code.length) {
        putLength(length);
    }
    for (int distance = 0; distance < kDistances; ++distance) {
        putLength(distance == kDistances - 1 ? 1 : 0);
    }
}

void PutRows(BitWriter& writer, const HuffmanCode& code, std::span<const std::uint8_t> rows,
             int pixels) {
    const auto put = [&](std::size_t symbol) {
        writer.Put(code.code[symbol], code.length[symbol]);
    };
    WalkRows(
        rows, pixels,
        [&](std::uint8_t byte) {
            put(byte);
            writer.Flush();
        },
        [&](const std::uint8_t* pixel) {
            // Put together first, so that only one step waits for the pixel before.
            std::uint64_t codes = 0;
            unsigned length = 0;
            for (std::size_t i = 0; i < kPixelBytes; ++i) {
                codes |= std::uint64_t{code.code[pixel[i]]} << length;
                length += code.length[pixel[i]];
            }
            writer.Put(codes, length);
            writer.Flush();
        },
        [&](int run) {
            const LengthCode& length = kLengthCodes[static_cast<std::size_t>(run)];
            put(length.symbol);
            writer.Put(length.extra, length.extraBits);
            writer.Put(0, 1);  // the only distance
            writer.Flush();
        });
    put(kEndOfBlock);
    writer.Flush();
}

}  // namespace

PixelDeflate::PixelDeflate(QByteArray& out) : out_(out) {}

std::size_t PixelDeflate::MostBytes(std::size_t rowBytes) {
    constexpr std::size_t kHeaderBytes = 512;
    return rowBytes * kLongestCode / 8 + kHeaderBytes;
}

void PixelDeflate::Block(std::span<const std::uint8_t> rows, int pixels, bool last) {
    const HuffmanCode code = MakeHuffmanCode(EstimateCounts(rows, pixels));

    const qsizetype before = out_.size();
    out_.resize(before + static_cast<qsizetype>(MostBytes(rows.size())));
    auto* const start = reinterpret_cast<std::uint8_t*>(out_.data()) + before;
    BitWriter writer{start, bits_, bitCount_};
    PutHeader(writer, code, last);
    PutRows(writer, code, rows, pixels);
    checksum_ = Adler32(checksum_, rows);
    if (last) {
        writer.count += 7;  // to a whole byte
        writer.Flush();
        for (int shift = 24; shift >= 0; shift -= 8) {
            *writer.at++ = static_cast<std::uint8_t>(checksum_ >> shift);
        }
    }
    out_.resize(before + (writer.at - start));
    bits_ = writer.bits;
    bitCount_ = writer.count;
}

}  // namespace lumirra
