#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "output/gif/palette/NearestColor.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
// The rest is compiled once for each machine level.
#include <hwy/highway.h>

#include <array>

#include "output/gif/ScalarKernels.h"
#include "output/gif/palette/NearestColor.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::gif::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Lanes hold points, so that all of them walk through the centres together.
void FindNearest(const Yuv* points, std::size_t count, const std::vector<Yuv>& centers,
                 std::uint8_t* nearest) {
    constexpr std::size_t kGroup = 16;
    const hn::CappedTag<float, kGroup> d;
    const hn::RebindToSigned<decltype(d)> di;
    alignas(64) std::array<float, kGroup> y{};
    alignas(64) std::array<float, kGroup> u{};
    alignas(64) std::array<float, kGroup> v{};
    alignas(64) std::array<std::int32_t, kGroup> index{};
    for (std::size_t start = 0; start < count; start += kGroup) {
        const std::size_t used = std::min(kGroup, count - start);
        for (std::size_t i = 0; i < used; ++i) {
            y[i] = points[start + i].y;
            u[i] = points[start + i].u;
            v[i] = points[start + i].v;
        }
        for (std::size_t lane = 0; lane < kGroup; lane += hn::Lanes(d)) {
            const auto py = hn::Load(d, &y[lane]);
            const auto pu = hn::Load(d, &u[lane]);
            const auto pv = hn::Load(d, &v[lane]);
            auto least = hn::Set(d, 1e30F);
            auto best = hn::Zero(di);
            for (std::size_t c = 0; c < centers.size(); ++c) {
                const auto dy = hn::Sub(py, hn::Set(d, centers[c].y));
                const auto du = hn::Sub(pu, hn::Set(d, centers[c].u));
                const auto dv = hn::Sub(pv, hn::Set(d, centers[c].v));
                const auto error =
                    hn::Add(hn::Add(hn::Mul(dy, dy), hn::Mul(du, du)), hn::Mul(dv, dv));
                const auto better = hn::Lt(error, least);
                least = hn::IfThenElse(better, error, least);
                best = hn::IfThenElse(hn::RebindMask(di, better),
                                      hn::Set(di, static_cast<std::int32_t>(c)), best);
            }
            hn::Store(best, di, &index[lane]);
        }
        for (std::size_t i = 0; i < used; ++i) {
            nearest[start + i] = static_cast<std::uint8_t>(index[i]);
        }
    }
}

}  // namespace lumirra::gif::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumirra::gif {

HWY_EXPORT(FindNearest);

void NearestCenters(const std::vector<Yuv>& points, const std::vector<Yuv>& centers,
                    std::vector<std::uint8_t>& nearest) {
    if (scalar::IsForced()) {
        scalar::NearestCenters(points, centers, nearest);
        return;
    }
    nearest.resize(points.size());
    HWY_DYNAMIC_DISPATCH(FindNearest)(points.data(), points.size(), centers, nearest.data());
}

}  // namespace lumirra::gif
#endif
