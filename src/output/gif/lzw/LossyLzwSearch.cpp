#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "output/gif/lzw/LossyLzwSearch.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
// The rest is compiled once for each machine level.
#include <hwy/highway.h>

#include <array>

#include "output/gif/ScalarKernels.h"
#include "output/gif/lzw/Candidates-inl.h"
#include "output/gif/lzw/LossyLzwSearch-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::gif::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Weighted squared distances of the colours at `lane` of three planes from a target.
template <class D>
HWY_INLINE hn::Vec<D> WeightedDistances(D d, const float* y, const float* u, const float* v,
                                        const Yuv& target, float weight) {
    const auto dy = hn::Sub(hn::Load(d, y), hn::Set(d, target.y));
    const auto du = hn::Sub(hn::Load(d, u), hn::Set(d, target.u));
    const auto dv = hn::Sub(hn::Load(d, v), hn::Set(d, target.v));
    return hn::Mul(hn::Set(d, weight),
                   hn::Add(hn::Add(hn::Mul(dy, dy), hn::Mul(du, du)), hn::Mul(dv, dv)));
}

/// Bits of the lanes where the mask is set.
template <class D>
HWY_INLINE unsigned BitsOf(D d, hn::Mask<D> mask) {
    std::array<std::uint8_t, 8> bytes{};
    hn::StoreMaskBits(d, mask, bytes.data());
    return bytes[0] | static_cast<unsigned>(bytes[1]) << 8U;
}

struct VectorKernels {
    using Candidates = HWY_NAMESPACE::Candidates;

    static HWY_INLINE float Errors(const ColorPlanes& colors, const SearchPixel& pixel,
                                   float* errors) {
        const hn::CappedTag<float, kGroup> d;
        auto least = hn::Set(d, 2 * kNever);
        for (std::size_t i = 0; i < colors.count; i += hn::Lanes(d)) {
            const auto error = WeightedDistances(d, &colors.y[i], &colors.u[i], &colors.v[i],
                                                 pixel.target, pixel.weight);
            least = hn::Min(least, error);
            hn::Store(error, d, errors + i);
        }
        return hn::GetLane(hn::MinOfLanes(d, least));
    }

    static HWY_INLINE void Collect(const float* errors, std::size_t count, float limit,
                                   Candidates& candidates) {
        const hn::CappedTag<float, kGroup> d;
        for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
            const auto useful = hn::Set(d, std::min(limit, candidates.Worst()));
            for (unsigned bits = BitsOf(d, hn::Le(hn::Load(d, errors + i), useful)); bits != 0;
                 bits &= bits - 1) {
                const std::size_t color = i + static_cast<std::size_t>(std::countr_zero(bits));
                candidates.Offer(errors[color], static_cast<unsigned>(color));
            }
        }
    }

    static HWY_INLINE unsigned ErrorsBelow(const LzwDictionary::Block& block, const Yuv& target,
                                           float weight, float limit,
                                           std::array<float, LzwDictionary::kBlockLanes>& errors) {
        const hn::CappedTag<float, LzwDictionary::kBlockLanes> d;
        unsigned bits = 0;
        for (std::size_t lane = 0; lane < LzwDictionary::kBlockLanes; lane += hn::Lanes(d)) {
            const auto error = WeightedDistances(d, &block.y[lane], &block.u[lane], &block.v[lane],
                                                 target, weight);
            hn::Store(error, d, &errors[lane]);
            bits |= BitsOf(d, hn::Lt(error, hn::Set(d, limit))) << lane;
        }
        return bits;
    }

    static void PreparePixels(const PixelRow& row, const SearchTuning& tuning, SearchPixel* out) {
        gif::PreparePixels(row, tuning, out);
    }
};

bool RunSearch(const SearchJob& job, Screen& screen, std::vector<std::uint8_t>& data) {
    return Searcher<VectorKernels>(job, screen, data).Run();
}

}  // namespace lumirra::gif::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumirra::gif {

HWY_EXPORT(RunSearch);

int SearchReach(int width) {
    constexpr int kRows = 4;
    constexpr int kPixels = 1024;
    return std::max(kRows, kPixels / std::max(width, 1));
}

int CodeBitsFor(std::size_t entries) {
    int bits = 2;
    while ((std::size_t{1} << static_cast<unsigned>(bits)) < entries) {
        ++bits;
    }
    return bits;
}

bool SearchLossyLzw(const SearchJob& job, Screen& screen, std::vector<std::uint8_t>& data) {
    return scalar::IsForced() ? scalar::SearchLossyLzw(job, screen, data)
                              : HWY_DYNAMIC_DISPATCH(RunSearch)(job, screen, data);
}

}  // namespace lumirra::gif
#endif
