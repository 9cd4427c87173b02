// The kernels that look at neighbouring pixels; compiled once for each target.

#if defined(LUMIRRA_IMAGING_EDGE_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef LUMIRRA_IMAGING_EDGE_ROWS_INL_H_
#undef LUMIRRA_IMAGING_EDGE_ROWS_INL_H_
#else
#define LUMIRRA_IMAGING_EDGE_ROWS_INL_H_
#endif

#include "imaging/kernels/Pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::HWY_NAMESPACE {

inline void BlurAlongRow(const float* in, const float* weights, int radius, float* out,
                         std::size_t n) {
    // Four sums at once hide the latency of the additions.
    const Floats d;
    const std::size_t lanes = hn::Lanes(d);
    for (std::size_t x = 0; x < n; x += 4 * lanes) {
        const float* from = in + x - radius;
        Float sum0 = hn::Zero(d);
        Float sum1 = sum0;
        Float sum2 = sum0;
        Float sum3 = sum0;
        for (int k = 0; k <= 2 * radius; ++k) {
            const Float weight = All(weights[k]);
            sum0 = hn::MulAdd(hn::LoadU(d, from + k), weight, sum0);
            sum1 = hn::MulAdd(hn::LoadU(d, from + k + lanes), weight, sum1);
            sum2 = hn::MulAdd(hn::LoadU(d, from + k + 2 * lanes), weight, sum2);
            sum3 = hn::MulAdd(hn::LoadU(d, from + k + 3 * lanes), weight, sum3);
        }
        hn::StoreU(sum0, d, out + x);
        hn::StoreU(sum1, d, out + x + lanes);
        hn::StoreU(sum2, d, out + x + 2 * lanes);
        hn::StoreU(sum3, d, out + x + 3 * lanes);
    }
}

inline void BlurAcrossRows(const float* const* in, const float* weights, int radius,
                           float* const* out, std::size_t n) {
    // Each value read goes into all the rows made, which saves most of the reading.
    const Floats d;
    for (std::size_t x = 0; x < n; x += hn::Lanes(d)) {
        Float sums[kBlurredRows];
        for (Float& sum : sums) {
            sum = hn::Zero(d);
        }
        for (int k = 0; k < 2 * radius + kBlurredRows; ++k) {
            const Float value = hn::LoadU(d, in[k] + x);
            for (int row = 0; row < kBlurredRows; ++row) {
                sums[row] = hn::MulAdd(value, All(weights[k - row]), sums[row]);
            }
        }
        for (int row = 0; row < kBlurredRows; ++row) {
            hn::StoreU(sums[row], d, out[row] + x);
        }
    }
}

inline void LuminanceRow(bool premultiplied, const Planes& row, std::size_t n) {
    const Floats d;
    for (std::size_t x = 0; x < n; x += hn::Lanes(d)) {
        Color color = LoadPlanes(row, x);
        if (premultiplied) {
            const Float alpha = hn::Max(hn::LoadU(d, row[3] + x), All(1e-30F));
            const Float inverse = hn::Div(All(1), alpha);
            color = ForEach(color, [&](Float c) { return Clamped(hn::Mul(c, inverse)); });
            StorePlanes(color, row, x);
        }
        hn::StoreU(Luminance(color), d, row[3] + x);
    }
}

HWY_INLINE Float SobelMagnitude(const RowsAround& rows, std::size_t x) {
    const Floats d;
    const auto at = [&](std::size_t row, int dx) { return hn::LoadU(d, rows[row] + x + dx); };
    const Float topLeft = at(0, -1);
    const Float topRight = at(0, 1);
    const Float bottomLeft = at(2, -1);
    const Float bottomRight = at(2, 1);
    const Float across =
        hn::MulAdd(All(2), hn::Sub(at(1, 1), at(1, -1)),
                   hn::Add(hn::Sub(topRight, topLeft), hn::Sub(bottomRight, bottomLeft)));
    const Float down =
        hn::MulAdd(All(2), hn::Sub(at(2, 0), at(0, 0)),
                   hn::Add(hn::Sub(bottomLeft, topLeft), hn::Sub(bottomRight, topRight)));
    return hn::Sqrt(hn::MulAdd(across, across, hn::Mul(down, down)));
}

inline void ToonRow(const RowsAround& luminance, float threshold, float quantization,
                    const Planes& in, const Planes& out, std::size_t n) {
    const Floats d;
    for (std::size_t x = 0; x < n; x += hn::Lanes(d)) {
        const auto line = hn::Ge(SobelMagnitude(luminance, x), All(threshold));
        const Color color = ForEach(Quantized(LoadPlanes(in, x), quantization),
                                    [&](Float c) { return hn::IfThenZeroElse(line, c); });
        StorePlanes(color, out, x);
        hn::StoreU(Luminance(color), d, out[3] + x);
    }
}

inline void SketchRow(const RowsAround& luminance, float intensity, float edge, const Planes& out,
                      std::size_t n) {
    const Floats d;
    for (std::size_t x = 0; x < n; x += hn::Lanes(d)) {
        const Float strength = hn::Mul(All(edge), SobelMagnitude(luminance, x));
        const Float paper = hn::IfThenZeroElse(hn::Ge(strength, All(intensity)), All(1));
        StorePlanes({paper, paper, paper}, out, x);
    }
}

}  // namespace lumirra::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif  // the guard above
