#include "output/gif/Masking.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

namespace lumirra::gif {

namespace {

constexpr float kHalfActivity = 60;
constexpr float kExponent = 0.3F;
constexpr int kTableSize = 2048;

const std::array<float, kTableSize>& WeightTable() {
    static const auto table = [] {
        std::array<float, kTableSize> values{};
        for (int i = 0; i < kTableSize; ++i) {
            values[static_cast<std::size_t>(i)] =
                std::pow(kHalfActivity / (static_cast<float>(i) + kHalfActivity), kExponent);
        }
        return values;
    }();
    return table;
}

int Luma(Rgba color) {
    return (77 * color.r + 150 * color.g + 29 * color.b) >> 8;
}

struct Sums {
    int sum = 0;
    int squares = 0;
};

Sums Column(const Rgba* above, const Rgba* row, const Rgba* below, int x) {
    const int a = Luma(above[x]);
    const int b = Luma(row[x]);
    const int c = Luma(below[x]);
    return {a + b + c, a * a + b * b + c * c};
}

}  // namespace

void MaskingRow(const Canvas& picture, int y, float* weights) {
    const auto& table = WeightTable();
    const Rgba* above = picture.Row(std::max(y - 1, 0));
    const Rgba* row = picture.Row(y);
    const Rgba* below = picture.Row(std::min(y + 1, picture.height - 1));
    Sums left = Column(above, row, below, 0);
    Sums middle = left;
    for (int x = 0; x < picture.width; ++x) {
        const Sums right = x + 1 < picture.width ? Column(above, row, below, x + 1) : middle;
        const int sum = left.sum + middle.sum + right.sum;
        const int squares = left.squares + middle.squares + right.squares;
        const int variance = (squares - sum * sum / 9) / 9;
        weights[x] = table[static_cast<std::size_t>(std::clamp(variance, 0, kTableSize - 1))];
        left = middle;
        middle = right;
    }
}

float FlatShare(const Canvas& picture) {
    constexpr std::size_t kSamples = 8192;
    constexpr std::size_t kColors = 16;
    std::vector<std::uint32_t> samples;
    const std::size_t step = picture.Size() / kSamples + 1;
    for (std::size_t i = 0; i < picture.Size(); i += step) {
        const Rgba color = picture.pixels[i];
        if (color.a != 0) {
            samples.push_back(static_cast<std::uint32_t>(color.r << 16 | color.g << 8 | color.b));
        }
    }
    if (samples.empty()) {
        return 0;
    }
    std::sort(samples.begin(), samples.end());
    std::vector<std::size_t> counts;
    for (auto at = samples.begin(); at != samples.end();) {
        const auto next = std::upper_bound(at, samples.end(), *at);
        counts.push_back(static_cast<std::size_t>(next - at));
        at = next;
    }
    std::sort(counts.rbegin(), counts.rend());
    counts.resize(std::min(counts.size(), kColors));
    const auto most = std::accumulate(counts.begin(), counts.end(), std::size_t{0});
    return static_cast<float>(most) / static_cast<float>(samples.size());
}

}  // namespace lumirra::gif
