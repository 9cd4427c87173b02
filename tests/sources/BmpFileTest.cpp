#include <gtest/gtest.h>

#include <QColor>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "sources/StillReader.h"

namespace lumirra {
namespace {

template <typename T>
QByteArray Little(T value) {
    QByteArray bytes(sizeof(T), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

/// How a file is written; the fields as they stand in it.
struct Spec {
    quint32 headerSize = 40;
    int width = 7;
    int height = 5;  ///< below zero: from the upper edge on
    int bits = 8;
    quint32 packing = 0;
    quint32 used = 0;
    std::vector<quint32> masks{};  ///< in the header where it is large enough, else after it
    QByteArray palette{};
    QByteArray pixels{};
};

QByteArray Written(const Spec& spec) {
    QByteArray header = Little(spec.headerSize);
    if (spec.headerSize == 12) {
        header += Little<quint16>(quint16(spec.width)) + Little<quint16>(quint16(spec.height)) +
                  Little<quint16>(1) + Little<quint16>(quint16(spec.bits));
    } else {
        header += Little(spec.width) + Little(spec.height) + Little<quint16>(1) +
                  Little<quint16>(quint16(spec.bits)) + Little(spec.packing) + Little<quint32>(0) +
                  Little<quint32>(2835) + Little<quint32>(2835) + Little(spec.used) +
                  Little<quint32>(0);
    }
    header = header.left(int(spec.headerSize));
    for (const quint32 mask : spec.masks) {
        header += Little(mask);
    }
    header = header.leftJustified(std::max<int>(header.size(), int(spec.headerSize)), '\0');
    header += spec.palette;
    const auto offset = quint32(14 + header.size());
    return "BM" + Little(quint32(offset + quint32(spec.pixels.size()))) + Little<quint32>(0) +
           Little(offset) + header + spec.pixels;
}

QColor PaletteColor(int index) {
    return {index * 37 % 256, 255 - index, index * 11 % 256};
}

QByteArray Palette(int colors, int entryBytes) {
    QByteArray bytes;
    for (int i = 0; i < colors; ++i) {
        const QColor color = PaletteColor(i);
        bytes += QByteArray{}
                     .append(char(color.blue()))
                     .append(char(color.green()))
                     .append(char(color.red()));
        bytes.append(QByteArray(entryBytes - 3, '\0'));
    }
    return bytes;
}

/// Rows in the order of the file, each padded to four bytes; `value` gives the number of a pixel
/// of the picture.
template <typename Value>
QByteArray Rows(const Spec& spec, const Value& value) {
    QByteArray bytes;
    const int height = std::abs(spec.height);
    for (int row = 0; row < height; ++row) {
        const int y = spec.height < 0 ? row : height - 1 - row;
        QByteArray packed((spec.width * spec.bits + 31) / 32 * 4, '\0');
        for (int x = 0; x < spec.width; ++x) {
            for (int bit = 0; bit < spec.bits; ++bit) {
                const bool set = ((value(x, y) >> bit) & 1U) != 0;
                // indexes from the high end of a byte on, numbers from the low byte on
                const int at =
                    spec.bits < 8 ? x * spec.bits + spec.bits - 1 - bit : x * spec.bits + bit;
                const int shift = spec.bits < 8 ? 7 - at % 8 : at % 8;
                packed[at / 8] = char(packed[at / 8] | (set ? 1 << shift : 0));
            }
        }
        bytes += packed;
    }
    return bytes;
}

class BmpFile : public testing::Test {
  protected:
    SourceImage Read(const QByteArray& bytes) {
        QFile file(folder_.filePath(QStringLiteral("picture")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        return ReadStill(file.fileName());
    }
    template <typename Color>
    void ExpectPicture(const Spec& spec, const Color& color, const char* what) {
        const SourceImage still = Read(Written(spec));
        EXPECT_FALSE(still.problem) << what;
        ASSERT_EQ(still.image.size(), QSize(spec.width, std::abs(spec.height))) << what;
        for (int y = 0; y < still.image.height(); ++y) {
            for (int x = 0; x < still.image.width(); ++x) {
                ASSERT_EQ(still.image.pixelColor(x, y).name(QColor::HexArgb),
                          color(x, y).name(QColor::HexArgb))
                    << what << " at " << x << "," << y;
            }
        }
    }
    QTemporaryDir folder_;
};

TEST_F(BmpFile, IndexesOfAnyWidthUnderEveryHeaderAndInBothOrders) {
    for (const int bits : {1, 2, 4, 8}) {
        const int colors = 1 << bits;
        const auto index = [&](int x, int y) { return unsigned(3 * x + 5 * y) % unsigned(colors); };
        for (const quint32 size : {12U, 16U, 40U, 64U, 108U, 124U}) {
            for (const int height : {5, -5}) {
                if (size == 12 && height < 0) {
                    continue;
                }
                Spec spec{.headerSize = size, .height = height, .bits = bits};
                spec.palette = Palette(colors, size == 12 ? 3 : 4);
                spec.pixels = Rows(spec, index);
                const std::string what = std::to_string(bits) + " bits, " + std::to_string(size);
                ExpectPicture(
                    spec, [&](int x, int y) { return PaletteColor(int(index(x, y))); },
                    what.c_str());
            }
        }
    }
    Spec few{.used = 3, .palette = Palette(3, 4)};
    few.pixels = Rows(few, [](int x, int) { return unsigned(x); });
    ExpectPicture(
        few, [](int x, int) { return x < 3 ? PaletteColor(x) : QColor(Qt::black); },
        "indexes beyond a short palette");
}

TEST_F(BmpFile, RunsInBothOrders) {
    // 4 x 3: a run of 3 and one pixel; three single ones, an end; a move, a run past the edge.
    const QByteArray eight = QByteArray::fromHex(
        "0305"
        "0109"
        "0000"
        "0003070809"
        "00"
        "0000"
        "00020200"
        "0906"
        "0001");
    const QByteArray four = QByteArray::fromHex(
        "0357"
        "0190"
        "0000"
        "00037890"
        "0000"
        "00020200"
        "0966"
        "0001");
    const int expected8[3][4] = {{5, 5, 5, 9}, {7, 8, 9, 0}, {0, 0, 6, 6}};
    const int expected4[3][4] = {{5, 7, 5, 9}, {7, 8, 9, 0}, {0, 0, 6, 6}};
    for (const int height : {3, -3}) {
        for (const bool half : {false, true}) {
            Spec spec{.width = 4, .height = height, .bits = half ? 4 : 8};
            spec.packing = half ? 2 : 1;
            spec.palette = Palette(half ? 16 : 256, 4);
            spec.pixels = half ? four : eight;
            const auto color = [&](int x, int y) {
                const int row = height < 0 ? y : 2 - y;
                return PaletteColor(half ? expected4[row][x] : expected8[row][x]);
            };
            ExpectPicture(spec, color, half ? "four bits" : "eight bits");
        }
    }
    Spec deep{.headerSize = 64, .width = 3, .height = 1, .bits = 24, .packing = 4};
    deep.pixels = QByteArray::fromHex(
        "02102030"
        "01405060"
        "0001");
    ExpectPicture(
        deep,
        [](int x, int) { return x < 2 ? QColor(0x30, 0x20, 0x10) : QColor(0x60, 0x50, 0x40); },
        "three bytes");
}

TEST_F(BmpFile, NumbersByTheMasksOfTheFile) {
    struct Case {
        quint32 size;
        int bits;
        std::vector<quint32> masks;
    };
    const std::vector<Case> cases{
        {40, 16, {0xF800, 0x7E0, 0x1F}},        {40, 16, {0x1F, 0x7C00, 0x3E0}},
        {108, 16, {0xF00, 0xF0, 0xF, 0xF000}},  {124, 16, {0xE000, 0x1C00, 0x0300, 0x0001}},
        {40, 32, {0x3FF00000, 0xFFC00, 0x3FF}}, {56, 32, {0xFF000000, 0xFF0000, 0xFF00, 0xFF}},
        {52, 32, {0xFF, 0xFF00, 0xFF0000}},     {108, 32, {0x7F, 0x80, 0xFFFF0000, 0x7F00}},
    };
    for (const Case& wanted : cases) {
        Spec spec{.headerSize = wanted.size, .height = -5, .bits = wanted.bits, .packing = 3};
        spec.masks = wanted.masks;
        const auto number = [&](int x, int y) {
            const quint32 mixed = quint32(x * 7 + y + 1) * 2654435761U;
            return wanted.bits == 16 ? mixed >> 16 : mixed;
        };
        spec.pixels = Rows(spec, number);
        const auto color = [&](int x, int y) {
            int channels[4] = {0, 0, 0, 255};
            for (std::size_t i = 0; i < wanted.masks.size(); ++i) {
                quint64 mask = wanted.masks[i];
                quint64 value = number(x, y) & mask;
                for (; mask % 2 == 0; mask /= 2) {
                    value /= 2;
                }
                channels[i] = int(std::lround(double(value) * 255 / double(mask)));
            }
            return QColor(channels[0], channels[1], channels[2], channels[3]);
        };
        const std::string what = std::to_string(wanted.size) + "/" + std::to_string(wanted.bits);
        ExpectPicture(spec, color, what.c_str());
    }
    Spec plain{.headerSize = 12, .bits = 24};
    plain.pixels = Rows(plain, [](int x, int y) { return unsigned(x << 16 | y << 8 | 9); });
    ExpectPicture(
        plain, [](int x, int y) { return QColor(x, y, 9); }, "without masks");
}

TEST_F(BmpFile, WhatIsCutShortOrMadeUpIsReadAsFarAsItGoes) {
    Spec spec{.width = 30, .height = -20, .palette = Palette(256, 4)};
    spec.pixels = Rows(spec, [](int x, int y) { return unsigned(x + y); });
    const QByteArray good = Written(spec);
    const SourceImage half = Read(good.chopped(32 * 10));
    ASSERT_EQ(half.image.size(), QSize(30, 20));
    ASSERT_TRUE(half.problem && half.problem->message.contains(QLatin1String("50 %")));
    EXPECT_EQ(half.image.pixelColor(29, 9), PaletteColor(38));
    EXPECT_EQ(half.image.pixelColor(0, 10).alpha(), 0);

    // Numbers from a bad dream, wherever they stand: a picture of the size told, or none.
    Spec runs = spec;
    runs.packing = 1;
    runs.pixels = QByteArray::fromHex(
                      "00021e00"
                      "1e05"
                      "0000"
                      "000affff") +
                  QByteArray(300, '\7');
    std::mt19937 random(7);
    for (const QByteArray& file : {good, Written(runs)}) {
        for (int round = 0; round < 300; ++round) {
            QByteArray bytes = file;
            for (int i = 0; i < 1 + round % 4; ++i) {
                const auto at = 6 + random() % (round % 3 == 0 ? quint32(bytes.size() - 6) : 48);
                bytes[qsizetype(at)] = char(round % 2 == 0 ? random() : 0xFF);
            }
            const SourceImage still = Read(bytes);
            EXPECT_TRUE(!still.image.isNull() || still.problem);
        }
    }
    for (const QByteArray& none :
         {Written({.width = 0}), Written({.height = 0}), Written({.headerSize = 15}),
          Written({.bits = 3}), Written({.height = std::numeric_limits<int>::min()}),
          Written({.packing = 4}), good.left(60)}) {
        const SourceImage still = Read(none);
        EXPECT_TRUE(still.image.isNull() && still.problem);
    }
}

}  // namespace
}  // namespace lumirra
