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

/// From pixel `x` on in whole vectors; returns the first pixel left over.
template <class D>
int MixRowsBy(D d, const std::uint8_t* const* rows, const float* weights, int count, bool opaque,
              float* out, int x, int pixels) {
    const hn::Rebind<std::uint8_t, D> bytes;
    const hn::RebindToSigned<D> ints;
    const int step = static_cast<int>(hn::Lanes(d) / 4);
    alignas(64) static constexpr float kAlphaLane[16] = {0, 0, 0, 1, 0, 0, 0, 1,
                                                         0, 0, 0, 1, 0, 0, 0, 1};
    const auto isAlpha = hn::Gt(hn::Load(d, kAlphaLane), hn::Zero(d));
    const auto one = hn::Set(d, 1.0F);
    const auto scale = hn::Set(d, 1.0F / 255);
    for (; x + step <= pixels; x += step) {
        auto sum = hn::Zero(d);
        for (int k = 0; k < count; ++k) {
            const auto raw = hn::LoadU(bytes, rows[k] + std::size_t{4} * static_cast<unsigned>(x));
            auto value = hn::ConvertTo(d, hn::PromoteTo(ints, raw));
            if (!opaque) {
                const auto alpha = hn::Mul(hn::Broadcast<3>(value), scale);
                value = hn::Mul(value, hn::IfThenElse(isAlpha, one, alpha));
            }
            sum = hn::Add(sum, hn::Mul(value, hn::Set(d, weights[k])));
        }
        hn::StoreU(sum, d, out + std::size_t{4} * static_cast<unsigned>(x));
    }
    return x;
}

void MixRowsOnTarget(const std::uint8_t* const* rows, const float* weights, int count, bool opaque,
                     float* out, int pixels) {
    const int x =
        MixRowsBy(hn::CappedTag<float, 16>(), rows, weights, count, opaque, out, 0, pixels);
    MixRowsBy(hn::CappedTag<float, 4>(), rows, weights, count, opaque, out, x, pixels);
}

void MixAlongRowOnTarget(const float* row, const ResampleWeights& weights, std::uint8_t* out) {
    const hn::CappedTag<float, 4> d;
    const hn::Rebind<std::int32_t, decltype(d)> ints;
    const hn::Rebind<std::uint8_t, decltype(d)> bytes;
    for (const auto& run : weights.runs) {
        const float* weight = weights.weights.data() + run.weights;
        const float* p = row + std::size_t{4} * static_cast<unsigned>(run.first);
        auto even = hn::Zero(d);
        auto odd = hn::Zero(d);
        int k = 0;
        for (; k + 1 < run.count; k += 2, p += 8) {
            even = hn::Add(even, hn::Mul(hn::LoadU(d, p), hn::Set(d, weight[k])));
            odd = hn::Add(odd, hn::Mul(hn::LoadU(d, p + 4), hn::Set(d, weight[k + 1])));
        }
        if (k < run.count) {
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
