#include "output/size/RowSample.h"

#include <algorithm>
#include <cmath>

namespace lumirra {

namespace {

constexpr int kShare = 8;
constexpr int kBandRows = 8;
/// Bytes that an image costs more because its strings are not learned yet: they weigh in a sample
/// as in the whole, and no more than this share of it.
constexpr double kUnlearned = 100;
constexpr double kMostUnlearned = 0.2;

/// Bytes of an image of one colour: each string is one pixel longer than the one before. What
/// stands still costs that much, and it grows with the root of the pixels.
double OneColorBytes(long long pixels) {
    constexpr int kFirstCode = 258;
    constexpr int kLastCode = 4095;
    double bits = 0;
    int code = kFirstCode;
    for (long long length = 1; pixels > 0; pixels -= length) {
        bits += std::floor(std::log2(code)) + 1;
        if (code < kLastCode) {
            ++code;
            ++length;
        }
    }
    return bits / 8;
}

}  // namespace

std::vector<int> SampleRows(int height) {
    const int wanted = std::max(height / kShare, 1);
    const int bands = std::max((wanted + kBandRows / 2) / kBandRows, std::min(wanted, 2));
    const int bandRows = wanted / bands;
    std::vector<int> rows;
    for (int band = 0; band < bands; ++band) {
        const int from = static_cast<int>(static_cast<long long>(height) * band / bands);
        const int to = static_cast<int>(static_cast<long long>(height) * (band + 1) / bands);
        // Not at equal distances: pictures repeat themselves in lines of text, tiles, waves.
        constexpr double kGoldenRatio = 0.6180339887;
        const double shift = std::fmod(0.5 + band * kGoldenRatio, 1.0);
        const int start = from + static_cast<int>(shift * (to - from - bandRows + 1));
        for (int row = 0; row < bandRows; ++row) {
            rows.push_back(start + row);
        }
    }
    return rows;
}

void ImageSample::Add(double sampleBytes) {
    ++images;
    content += samplePixels < pixels ? std::max(sampleBytes - OneColorBytes(samplePixels), 0.0)
                                     : sampleBytes;
}

double ImageSample::WholeBytes(double contentRatio) const {
    if (samplePixels >= pixels) {
        return content;
    }
    const double perImage = std::max(content / std::max(images, 1), 1.0);
    const double shortcoming = 1 + std::min(kUnlearned / perImage, kMostUnlearned);
    return images * OneColorBytes(pixels) + content * contentRatio / shortcoming;
}

}  // namespace lumirra
