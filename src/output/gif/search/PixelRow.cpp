#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "output/gif/search/PixelRow.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
// The rest is compiled once for each machine level.
#include <hwy/highway.h>

#include <algorithm>
#include <array>

#include "output/gif/search/PixelRow.h"
#include "output/gif/search/StringSearch.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::gif::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr std::size_t kGroup = 16;
using Floats = hn::CappedTag<float, kGroup>;
using Words = hn::RebindToUnsigned<Floats>;

struct Tones {
    hn::Vec<Floats> y;
    hn::Vec<Floats> u;
    hn::Vec<Floats> v;
};

/// `words` are pixels as they lie in memory, red in the lowest byte.
HWY_INLINE Tones TonesOf(hn::Vec<Words> words) {
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

HWY_INLINE hn::Vec<Floats> DistanceOf(const Tones& a, const Tones& b) {
    const auto y = hn::Sub(a.y, b.y);
    const auto u = hn::Sub(a.u, b.u);
    const auto v = hn::Sub(a.v, b.v);
    return hn::Add(hn::Add(hn::Mul(y, y), hn::Mul(u, u)), hn::Mul(v, v));
}

HWY_INLINE Tones Where(hn::Mask<Floats> mask, const Tones& yes, const Tones& no) {
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

/// What keeping costs where both goal and screen have a colour.
HWY_INLINE hn::Vec<Floats> KeepErrors(const Tones& target, const Tones& drawn, const Tones& shown,
                                      hn::Vec<Floats> weight, const SearchTuning& tuning) {
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
    const auto far = hn::Set(d, kFarTone);
    const auto never = hn::Set(d, kNeverDrawn);
    const Tones nowhere{far, far, far};
    const Tones nothing{hn::Zero(d), hn::Zero(d), hn::Zero(d)};
    alignas(64) std::array<float, kGroup> weights{};
    alignas(64) std::array<float, kGroup * 4> targets;
    alignas(64) std::array<float, kGroup * 4> screens;
    for (std::size_t start = 0; start < row.width; start += kGroup) {
        const std::size_t count = std::min(kGroup, row.width - start);
        const Group goals(row.goal + start, count);
        const Group shown(row.shown == nullptr ? nullptr : row.shown + start, count);
        const Group drawn(row.drawn + start, count);
        for (std::size_t i = 0; i < count; ++i) {
            const int ahead = row.lasts == nullptr ? 0 : row.lasts[start + i] - 1;
            weights[i] = row.weights[start + i] * (1 + tuning.lasting * static_cast<float>(ahead));
        }
        for (std::size_t lane = 0; lane < count; lane += hn::Lanes(d)) {
            const auto goal = goals.Load(lane);
            const auto screen = shown.Load(lane);
            const auto weight = hn::Load(d, &weights[lane]);
            const auto noGoal = transparent(goal);
            const auto noScreen = transparent(screen);
            const Tones target = TonesOf(goal);
            const Tones seen = TonesOf(screen);
            auto keep = never;
            if (row.exact) {
                keep = hn::IfThenZeroElse(hn::RebindMask(d, hn::Eq(goal, screen)), never);
            } else {
                keep = KeepErrors(target, TonesOf(drawn.Load(lane)), seen, weight, tuning);
                keep = hn::IfThenElse(noScreen, never, keep);
            }
            const Tones to = Where(noGoal, nowhere, target);
            const Tones from = Where(noGoal, nowhere, Where(noScreen, nothing, seen));
            hn::StoreInterleaved4(to.y, to.u, to.v, weight, d, &targets[lane * 4]);
            hn::StoreInterleaved4(from.y, from.u, from.v, hn::IfThenZeroElse(noGoal, keep), d,
                                  &screens[lane * 4]);
        }
        for (std::size_t i = 0; i < count; ++i) {
            const float* to = &targets[i * 4];
            const float* from = &screens[i * 4];
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
    HWY_DYNAMIC_DISPATCH(Prepare)(row, tuning, out);
}

}  // namespace lumirra::gif
#endif
