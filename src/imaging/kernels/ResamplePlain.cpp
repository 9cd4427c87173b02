#include <algorithm>
#include <array>
#include <cmath>

#include "imaging/kernels/Resample.h"

namespace lumirra {
namespace {

/// The two-parameter cubic family of Mitchell and Netravali, "Reconstruction Filters in Computer
/// Graphics", 1988.
double Cubic(double x, double b, double c) {
    x = std::abs(x);
    if (x < 1) {
        return ((12 - 9 * b - 6 * c) * x * x * x + (-18 + 12 * b + 6 * c) * x * x + 6 - 2 * b) / 6;
    }
    if (x < 2) {
        return ((-b - 6 * c) * x * x * x + (6 * b + 30 * c) * x * x + (-12 * b - 48 * c) * x +
                8 * b + 24 * c) /
               6;
    }
    return 0;
}

/// Reflects at the border pixels' centres, which continues any pattern without a seam.
int Mirrored(int position, int size) {
    if (size == 1) {
        return 0;
    }
    const int period = 2 * (size - 1);
    const int phase = (position % period + period) % period;
    return std::min(phase, period - phase);
}

struct Filter {
    double stretch;  ///< source pixels for one unit of the kernel
    double reach;    ///< kernel units
    double (*kernel)(double x);
};

Filter FilterFor(double ratio) {
    constexpr double kStrongShrink = 3;
    if (ratio >= kStrongShrink) {
        return {ratio, 1, [](double x) { return std::max(0.0, 1 - std::abs(x)); }};
    }
    if (ratio > 1) {
        return {ratio, 2, [](double x) { return Cubic(x, 1.0 / 3, 1.0 / 3); }};
    }
    return {1, 2, [](double x) { return Cubic(x, 0, 0.5); }};
}

}  // namespace

ResampleWeights MakeResampleWeights(int sourceSize, int targetSize) {
    const double ratio = static_cast<double>(sourceSize) / targetSize;
    const Filter filter = FilterFor(ratio);
    const auto position = [sourceSize, ratio](int k) {
        return ratio > 1 ? Mirrored(k, sourceSize) : std::clamp(k, 0, sourceSize - 1);
    };
    ResampleWeights result;
    result.spans.reserve(static_cast<std::size_t>(targetSize));
    std::vector<double> weights;
    for (int i = 0; i < targetSize; ++i) {
        const double centre = (i + 0.5) * ratio - 0.5;
        const int first = static_cast<int>(std::ceil(centre - filter.reach * filter.stretch));
        const int last = static_cast<int>(std::floor(centre + filter.reach * filter.stretch));
        int begin = sourceSize;
        int end = 0;
        for (int k = first; k <= last; ++k) {
            begin = std::min(begin, position(k));
            end = std::max(end, position(k) + 1);
        }
        weights.assign(static_cast<std::size_t>(end - begin), 0.0);
        double total = 0;
        for (int k = first; k <= last; ++k) {
            const double weight = filter.kernel((k - centre) / filter.stretch);
            weights[static_cast<std::size_t>(position(k) - begin)] += weight;
            total += weight;
        }
        result.spans.push_back({begin, end - begin, result.weights.size()});
        for (const double weight : weights) {
            result.weights.push_back(static_cast<float>(weight / total));
        }
    }
    return result;
}

void MixRowsPlainly(const std::uint8_t* const* rows, const float* weights, int count, bool opaque,
                    float* out, int pixels) {
    for (std::size_t i = 0; i < std::size_t{4} * static_cast<unsigned>(pixels); ++i) {
        float sum = 0;
        for (int k = 0; k < count; ++k) {
            float value = rows[k][i];
            if (!opaque && i % 4 != 3) {
                value *= static_cast<float>(rows[k][i | 3]) * (1.0F / 255);
            }
            sum += value * weights[k];
        }
        out[i] = sum;
    }
}

void MixAlongRowPlainly(const float* row, const ResampleWeights& weights, std::uint8_t* out) {
    for (const auto& span : weights.spans) {
        std::array<float, 4> even{};
        std::array<float, 4> odd{};
        for (int k = 0; k < span.count; ++k) {
            const float weight = weights.weights[span.weights + static_cast<std::size_t>(k)];
            const float* p = row + std::size_t{4} * static_cast<unsigned>(span.first + k);
            for (std::size_t c = 0; c < 4; ++c) {
                (k % 2 == 0 ? even : odd)[c] += p[c] * weight;
            }
        }
        const float alpha = even[3] + odd[3];
        for (std::size_t c = 0; c < 4; ++c) {
            float value = even[c] + odd[c];
            if (alpha < 0.5F) {
                value = 0;
            } else if (alpha < 254.5F && c != 3) {
                value *= 255 / alpha;
            }
            // Rounded as the vector rows do, bit for bit.
            // NOLINTNEXTLINE(bugprone-incorrect-roundings)
            *out++ = static_cast<std::uint8_t>(std::clamp(value, 0.0F, 255.0F) + 0.5F);
        }
    }
}

}  // namespace lumirra
