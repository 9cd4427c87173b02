#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/Resample.cpp"
#include "imaging/kernels/Resample.h"

#include <hwy/foreach_target.h>  // before highway.h
#include <hwy/highway.h>

#include "imaging/kernels/RowKernels.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

void MixRowsOnTarget(const std::uint8_t* const* rows, const float* weights, int count, bool opaque,
                     float* out, int pixels) {
    MixRowsPlainly(rows, weights, count, opaque, out, pixels);
}

void MixAlongRowOnTarget(const float* row, const ResampleWeights& weights, std::uint8_t* out) {
    MixAlongRowPlainly(row, weights, out);
}

#else

// Products and sums are kept apart: fused ones would round differently from machine to machine.

/// Four RGBA8 bytes a pixel as floats, colours multiplied by alpha unless `kOpaque`.
template <bool kOpaque, class D>
HWY_INLINE hn::Vec<D> LoadPixels(D d, const std::uint8_t* p) {
    const hn::Rebind<std::uint8_t, D> bytes;
    const auto value =
        hn::ConvertTo(d, hn::PromoteTo(hn::RebindToSigned<D>(), hn::LoadU(bytes, p)));
    if constexpr (kOpaque) {
        return value;
    } else {
        alignas(64) static constexpr float kAlphaLane[16] = {0, 0, 0, 1, 0, 0, 0, 1,
                                                             0, 0, 0, 1, 0, 0, 0, 1};
        const auto isAlpha = hn::Gt(hn::Load(d, kAlphaLane), hn::Zero(d));
        const auto alpha = hn::Mul(hn::Broadcast<3>(value), hn::Set(d, 1.0F / 255));
        return hn::Mul(value, hn::IfThenElse(isAlpha, hn::Set(d, 1.0F), alpha));
    }
}

/// From float `i` on in groups of `kVectors` vectors, which share the loads of row and weight;
/// returns the first float left over.
template <bool kOpaque, int kVectors, class D>
std::size_t MixRowsBy(D d, const std::uint8_t* const* rows, const float* weights, int count,
                      float* out, std::size_t i, std::size_t end) {
    const std::size_t lanes = hn::Lanes(d);
    for (; i + kVectors * lanes <= end; i += kVectors * lanes) {
        auto a = hn::Zero(d);
        auto b = a;
        auto c = a;
        auto e = a;
        for (int k = 0; k < count; ++k) {
            const std::uint8_t* p = rows[k] + i;
            const auto weight = hn::Set(d, weights[k]);
            a = hn::Add(a, hn::Mul(LoadPixels<kOpaque>(d, p), weight));
            if constexpr (kVectors == 4) {
                b = hn::Add(b, hn::Mul(LoadPixels<kOpaque>(d, p + lanes), weight));
                c = hn::Add(c, hn::Mul(LoadPixels<kOpaque>(d, p + 2 * lanes), weight));
                e = hn::Add(e, hn::Mul(LoadPixels<kOpaque>(d, p + 3 * lanes), weight));
            }
        }
        hn::StoreU(a, d, out + i);
        if constexpr (kVectors == 4) {
            hn::StoreU(b, d, out + i + lanes);
            hn::StoreU(c, d, out + i + 2 * lanes);
            hn::StoreU(e, d, out + i + 3 * lanes);
        }
    }
    return i;
}

template <bool kOpaque>
void MixRowsAs(const std::uint8_t* const* rows, const float* weights, int count, float* out,
               std::size_t floats) {
    const hn::CappedTag<float, 16> wide;
    const hn::CappedTag<float, 4> pixel;
    const std::size_t i = MixRowsBy<kOpaque, 4>(wide, rows, weights, count, out, 0, floats);
    MixRowsBy<kOpaque, 1>(pixel, rows, weights, count, out, i, floats);
}

void MixRowsOnTarget(const std::uint8_t* const* rows, const float* weights, int count, bool opaque,
                     float* out, int pixels) {
    const std::size_t floats = std::size_t{4} * static_cast<unsigned>(pixels);
    (opaque ? MixRowsAs<true> : MixRowsAs<false>)(rows, weights, count, out, floats);
}

void MixAlongRowOnTarget(const float* row, const ResampleWeights& weights, std::uint8_t* out) {
    const hn::CappedTag<float, 4> d;
    const hn::Rebind<std::int32_t, decltype(d)> ints;
    const hn::Rebind<std::uint8_t, decltype(d)> bytes;
    for (const auto& span : weights.spans) {
        const float* weight = weights.weights.data() + span.weights;
        const float* p = row + std::size_t{4} * static_cast<unsigned>(span.first);
        auto even = hn::Zero(d);
        auto odd = hn::Zero(d);
        int k = 0;
        for (; k + 1 < span.count; k += 2, p += 8) {
            even = hn::Add(even, hn::Mul(hn::LoadU(d, p), hn::Set(d, weight[k])));
            odd = hn::Add(odd, hn::Mul(hn::LoadU(d, p + 4), hn::Set(d, weight[k + 1])));
        }
        if (k < span.count) {
            even = hn::Add(even, hn::Mul(hn::LoadU(d, p), hn::Set(d, weight[k])));
        }
        auto sum = hn::Add(even, odd);
        const float alpha = hn::GetLane(hn::Broadcast<3>(sum));
        if (alpha < 0.5F) {
            sum = hn::Zero(d);
        } else if (alpha < 254.5F) {
            alignas(16) const float factors[4] = {255 / alpha, 255 / alpha, 255 / alpha, 1};
            sum = hn::Mul(sum, hn::Load(d, factors));
        }
        sum = hn::Min(hn::Max(sum, hn::Zero(d)), hn::Set(d, 255.0F));
        hn::StoreU(hn::DemoteTo(bytes, hn::ConvertTo(ints, hn::Add(sum, hn::Set(d, 0.5F)))), bytes,
                   out);
        out += 4;
    }
}

#endif

}  // namespace lumirra::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumirra {
HWY_EXPORT(MixRowsOnTarget);
HWY_EXPORT(MixAlongRowOnTarget);

void MixRows(const std::uint8_t* const* rows, const float* weights, int count, bool opaque,
             float* out, int pixels) {
    if (&Kernels() == &ScalarKernels()) {
        MixRowsPlainly(rows, weights, count, opaque, out, pixels);
        return;
    }
    HWY_DYNAMIC_DISPATCH(MixRowsOnTarget)(rows, weights, count, opaque, out, pixels);
}

void MixAlongRow(const float* row, const ResampleWeights& weights, std::uint8_t* out) {
    if (&Kernels() == &ScalarKernels()) {
        MixAlongRowPlainly(row, weights, out);
        return;
    }
    HWY_DYNAMIC_DISPATCH(MixAlongRowOnTarget)(row, weights, out);
}

}  // namespace lumirra
#endif
