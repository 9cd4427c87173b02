#include "output/size/RowSample.h"

#include <algorithm>
#include <cmath>

namespace lumirra {

namespace {

constexpr int kShare = 8;
constexpr int kBandRows = 8;
/// Bytes that a picture costs more because the coder has not learned from it yet: they weigh in a
/// sample as in the whole, and no more than this share of it.
constexpr double kUnlearned = 100;
constexpr double kMostUnlearned = 0.2;

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

void RowSample::Add(double sampleBytes) {
    ++pictures;
    content += whole ? sampleBytes : std::max(sampleBytes - unchangedSample, 0.0);
}

double RowSample::WholeBytes(double complexityRatio) const {
    if (whole) {
        return content;
    }
    const double perPicture = std::max(content / std::max(pictures, 1), 1.0);
    const double shortcoming = 1 + std::min(kUnlearned / perPicture, kMostUnlearned);
    return pictures * unchangedPicture + content * complexityRatio / shortcoming;
}

}  // namespace lumirra
