#include <gtest/gtest.h>
#include <zlib.h>

#include <random>
#include <vector>

#include "imaging/files/Adler32.h"
#include "imaging/files/HuffmanCode.h"
#include "imaging/files/PixelDeflate.h"

namespace lumirra {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Inflated(const QByteArray& stream, std::size_t size) {
    Bytes out(size);
    auto length = static_cast<uLongf>(size);
    const int state = uncompress(out.data(), &length, reinterpret_cast<const Bytef*>(stream.data()),
                                 static_cast<uLong>(stream.size()));
    EXPECT_EQ(state, Z_OK);
    EXPECT_EQ(length, size);
    return out;
}

/// Rows in blocks of `blockRows`.
QByteArray Deflated(const Bytes& rows, int pixels, int blockRows) {
    QByteArray stream;
    PixelDeflate deflate(stream);
    const std::size_t rowBytes = 1 + static_cast<std::size_t>(pixels) * 4;
    const std::size_t step = rowBytes * static_cast<std::size_t>(blockRows);
    for (std::size_t at = 0; at < rows.size(); at += step) {
        const std::size_t size = std::min(step, rows.size() - at);
        deflate.Block({rows.data() + at, size}, pixels, at + size == rows.size());
    }
    return stream;
}

/// Rows whose pixels repeat the one before with that probability; few or many byte values.
Bytes RandomRows(std::mt19937& random, int pixels, int count, double repeat, int values) {
    std::bernoulli_distribution again(repeat);
    Bytes rows;
    for (int y = 0; y < count; ++y) {
        rows.push_back(2);
        for (int x = 0; x < pixels; ++x) {
            if (x > 0 && again(random)) {
                rows.insert(rows.end(), rows.end() - 4, rows.end());
                continue;
            }
            for (int i = 0; i < 4; ++i) {
                rows.push_back(static_cast<std::uint8_t>(random() % static_cast<unsigned>(values)));
            }
        }
    }
    return rows;
}

TEST(PixelDeflate, AForeignInflaterGivesTheRowsBack) {
    std::mt19937 random(7);
    for (const int pixels : {1, 2, 3, 64, 65, 66, 129, 1000}) {
        for (const double repeat : {0.0, 0.5, 0.99, 1.0}) {
            for (const int values : {1, 2, 256}) {
                const Bytes rows = RandomRows(random, pixels, 9, repeat, values);
                for (const int blockRows : {1, 4, 9}) {
                    EXPECT_EQ(Inflated(Deflated(rows, pixels, blockRows), rows.size()), rows)
                        << pixels << ' ' << repeat << ' ' << values << ' ' << blockRows;
                }
            }
        }
    }
}

TEST(PixelDeflate, FlatRowsAreSmall) {
    std::mt19937 random(1);
    const Bytes rows = RandomRows(random, 1000, 100, 1.0, 1);
    // 16 runs a row of 1 + 5 + 1 bits, 5 literals a row of at most 4, and the codes' lengths.
    EXPECT_LT(Deflated(rows, 1000, 100).size(), 100 * (16 * 7 + 5 * 4) / 8 + 200);
}

TEST(Adler32, IsTheLibrarysForAnyLengthAndTheLargestSums) {
    std::mt19937 random(3);
    for (const std::size_t length : {0U, 1U, 15U, 4095U, 4096U, 4097U, 8192U, 100'001U}) {
        Bytes noise(length);
        for (std::uint8_t& byte : noise) {
            byte = static_cast<std::uint8_t>(random());
        }
        for (const Bytes& bytes : {noise, Bytes(length, 255)}) {
            for (const std::uint32_t before : {1U, 65520U << 16 | 65520U}) {
                const uLong expected =
                    bytes.empty() ? before : adler32_z(before, bytes.data(), length);
                EXPECT_EQ(Adler32(before, bytes), expected) << length;
            }
        }
    }
}

TEST(HuffmanCode, IsAPrefixCodeWithinTheLimitAndNearTheEntropy) {
    std::array<std::uint32_t, kLiteralSymbols> counts{};
    std::uint32_t previous = 1;
    std::uint32_t current = 1;
    for (std::size_t i = 0; i < 40; ++i) {  // Fibonacci weights ask for the deepest of trees
        counts[i * 7] = current;
        current = std::exchange(previous, std::min(previous + current, 2'000'000'000U));
    }
    const HuffmanCode code = MakeHuffmanCode(counts);
    double kraft = 0;
    double bits = 0;
    double entropy = 0;
    double total = 0;
    for (const std::uint32_t count : counts) {
        total += count;
    }
    for (std::size_t i = 0; i < counts.size(); ++i) {
        EXPECT_EQ(code.length[i] != 0, counts[i] != 0);
        if (counts[i] != 0) {
            EXPECT_LE(code.length[i], kLongestCode);
            kraft += std::ldexp(1.0, -code.length[i]);
            bits += static_cast<double>(counts[i]) * code.length[i];
            entropy += counts[i] * std::log2(total / counts[i]);
        }
    }
    EXPECT_DOUBLE_EQ(kraft, 1.0);
    EXPECT_LT(bits, entropy * 1.1);

    std::array<std::uint32_t, kLiteralSymbols> single{};
    single[256] = 1;
    EXPECT_EQ(MakeHuffmanCode(single).length[256], 1);
}

}  // namespace
}  // namespace lumirra
