#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "output/gif/lzw/PixelRow.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
// The rest is compiled once for each machine level.
#include <hwy/highway.h>

#include <algorithm>
#include <array>

#include "output/gif/ScalarKernels.h"
#include "output/gif/lzw/LossyLzwSearch.h"
#include "output/gif/lzw/PixelRow.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::gif::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr std::size_t kGroup = 16;
using Floats = hn::CappedTag<float, kGroup>;
using Words = hn::RebindToUnsigned<Floats>;

struct YuvLanes {
    hn::Vec<Floats> y;
    hn::Vec<Floats> u;
    hn::Vec<Floats> v;
};

/// `words` are pixels as they lie in memory, red in the lowest byte.
HWY_INLINE YuvLanes YuvLanesOf(hn::Vec<Words> words) {
    const Floats d;
    const Words dw;
    const hn::RebindToSigned<Floats> di;
    const auto byte = hn::Set(dw, 255U);
    const auto level = [&](hn::Vec<Words> value) {
        return hn::ConvertTo(d, hn::BitCast(di, hn::And(value, byte)));
    };
    const auto r = level(words);
    const auto g = level(hn::ShiftRight<8>(words));
    const auto b = level(hn::ShiftRight<16>(words));
    const auto luma =
        hn::Add(hn::Add(hn::Mul(hn::Set(d, 0.299F), r), hn::Mul(hn::Set(d, 0.587F), g)),
                hn::Mul(hn::Set(d, 0.114F), b));
    return {hn::Mul(hn::Set(d, kLumaScale), luma),
            hn::Mul(hn::Set(d, kBlueScale), hn::Sub(b, luma)),
            hn::Mul(hn::Set(d, kRedScale), hn::Sub(r, luma))};
}

HWY_INLINE hn::Vec<Floats> DistanceOf(const YuvLanes& a, const YuvLanes& b) {
    const auto y = hn::Sub(a.y, b.y);
    const auto u = hn::Sub(a.u, b.u);
    const auto v = hn::Sub(a.v, b.v);
    return hn::Add(hn::Add(hn::Mul(y, y), hn::Mul(u, u)), hn::Mul(v, v));
}

HWY_INLINE YuvLanes Where(hn::Mask<Floats> mask, const YuvLanes& yes, const YuvLanes& no) {
    return {hn::IfThenElse(mask, yes.y, no.y), hn::IfThenElse(mask, yes.u, no.u),
            hn::IfThenElse(mask, yes.v, no.v)};
}

/// The pixels as they lie in memory, those beyond `count` transparent.
struct Group {
    Group(const Rgba* pixels, std::size_t count) {
        if (pixels != nullptr) {
            std::copy_n(pixels, count, values.begin());
        }
    }
    hn::Vec<Words> Load(std::size_t lane) const {
        return hn::Load(Words(), reinterpret_cast<const std::uint32_t*>(values.data()) + lane);
    }
    alignas(64) std::array<Rgba, kGroup> values{};
};

/// What keeping costs where both target and screen have a colour.
HWY_INLINE hn::Vec<Floats> KeepErrors(const YuvLanes& target, const YuvLanes& drawn,
                                      const YuvLanes& shown, hn::Vec<Floats> weight,
                                      const SearchTuning& tuning) {
    const Floats d;
    const auto zero = hn::Zero(d);
    const auto moved =
        hn::Max(hn::Sub(DistanceOf(target, drawn), hn::Set(d, tuning.deadZone)), zero);
    const auto wrong =
        hn::Max(hn::Sub(DistanceOf(target, shown), hn::Set(d, tuning.goodEnough)), zero);
    return hn::Mul(weight, hn::Add(moved, hn::Mul(hn::Set(d, tuning.refine), wrong)));
}

void Prepare(const PixelRow& row, const SearchTuning& tuning, SearchPixel* out) {
    const Floats d;
    const Words dw;
    const auto transparent = [&](hn::Vec<Words> words) {
        return hn::RebindMask(d, hn::Eq(hn::ShiftRight<24>(words), hn::Zero(dw)));
    };
    const auto far = hn::Set(d, kFarYuv);
    const auto never = hn::Set(d, kNeverDrawn);
    const YuvLanes nowhere{far, far, far};
    const YuvLanes nothing{hn::Zero(d), hn::Zero(d), hn::Zero(d)};
    alignas(64) std::array<float, kGroup> weights{};
    alignas(64) std::array<float, kGroup * 4> targetYuvs;
    alignas(64) std::array<float, kGroup * 4> screenYuvs;
    for (std::size_t start = 0; start < row.width; start += kGroup) {
        const std::size_t count = std::min(kGroup, row.width - start);
        const Group targets(row.target + start, count);
        const Group shown(row.shown == nullptr ? nullptr : row.shown + start, count);
        const Group drawn(row.drawn + start, count);
        for (std::size_t i = 0; i < count; ++i) {
            const int ahead = row.lifetimes == nullptr ? 0 : row.lifetimes[start + i] - 1;
            weights[i] = row.weights[start + i] * (1 + tuning.lasting * static_cast<float>(ahead));
        }
        for (std::size_t lane = 0; lane < count; lane += hn::Lanes(d)) {
            const auto wanted = targets.Load(lane);
            const auto screen = shown.Load(lane);
            const auto weight = hn::Load(d, &weights[lane]);
            const auto noTarget = transparent(wanted);
            const auto noScreen = transparent(screen);
            const YuvLanes target = YuvLanesOf(wanted);
            const YuvLanes seen = YuvLanesOf(screen);
            auto keep = never;
            if (row.exact) {
                keep = hn::IfThenZeroElse(hn::RebindMask(d, hn::Eq(wanted, screen)), never);
            } else {
                keep = KeepErrors(target, YuvLanesOf(drawn.Load(lane)), seen, weight, tuning);
                keep = hn::IfThenElse(noScreen, never, keep);
            }
            const YuvLanes to = Where(noTarget, nowhere, target);
            const YuvLanes from = Where(noTarget, nowhere, Where(noScreen, nothing, seen));
            hn::StoreInterleaved4(to.y, to.u, to.v, weight, d, &targetYuvs[lane * 4]);
            hn::StoreInterleaved4(from.y, from.u, from.v, hn::IfThenZeroElse(noTarget, keep), d,
                                  &screenYuvs[lane * 4]);
        }
        for (std::size_t i = 0; i < count; ++i) {
            const float* to = &targetYuvs[i * 4];
            const float* from = &screenYuvs[i * 4];
            out[start + i] = {{to[0], to[1], to[2]}, to[3], {from[0], from[1], from[2]}, from[3]};
        }
    }
}

}  // namespace lumirra::gif::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumirra::gif {

HWY_EXPORT(Prepare);

void PreparePixels(const PixelRow& row, const SearchTuning& tuning, SearchPixel* out) {
    if (scalar::IsForced()) {
        scalar::PreparePixels(row, tuning, out);
    } else {
        HWY_DYNAMIC_DISPATCH(Prepare)(row, tuning, out);
    }
}

}  // namespace lumirra::gif
#endif
