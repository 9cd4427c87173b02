// The kernels on single pixels; compiled once for each target.

#if defined(LUMIRRA_IMAGING_COLOR_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef LUMIRRA_IMAGING_COLOR_ROWS_INL_H_
#undef LUMIRRA_IMAGING_COLOR_ROWS_INL_H_
#else
#define LUMIRRA_IMAGING_COLOR_ROWS_INL_H_
#endif

#include "imaging/kernels/Pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::HWY_NAMESPACE {

/// coefficients[0] + coefficients[1] x + ...
template <std::size_t kCount>
HWY_INLINE Float Polynomial(Float x, const std::array<float, kCount>& coefficients) {
    Float sum = All(coefficients[kCount - 1]);
    for (std::size_t i = kCount - 1; i > 0; --i) {
        sum = hn::MulAdd(sum, x, All(coefficients[i - 1]));
    }
    return sum;
}

/// log2 for 0 < x <= 1: the exponent, and a minimax polynomial on the mantissa taken between
/// sqrt(1/2) and sqrt(2). Off by at most 6.4e-6 before rounding.
HWY_INLINE Float Log2(Float x) {
    constexpr std::array<float, 6> kCoefficients = {1.4428095070974563F,  -0.7213673588453658F,
                                                    0.47498607354780814F, -0.35763974612178945F,
                                                    0.3613906837912104F,  -0.2980723759310048F};
    const Ints d;
    const auto bits = hn::BitCast(d, x);
    const auto exponent = hn::ShiftRight<23>(hn::Sub(bits, hn::Set(d, 0x3F3504F3)));
    const Float mantissa = hn::BitCast(Floats(), hn::Sub(bits, hn::ShiftLeft<23>(exponent)));
    const Float f = hn::Sub(mantissa, All(1));
    return hn::MulAdd(f, Polynomial(f, kCoefficients), hn::ConvertTo(Floats(), exponent));
}

/// 2^x for -126 <= x <= 0: minimax polynomial on the fraction, off by at most 3.6e-6 of the value,
/// exact for 0.
HWY_INLINE Float Exp2(Float x) {
    constexpr std::array<float, 5> kCoefficients = {1, 0.6931136044034354F, 0.24020711076623089F,
                                                    0.05597688363046087F, 0.009782912637829495F};
    // Rounded by the size of the sum, which leaves the whole number in its lowest bits, ready to
    // become the exponent.
    const Float shifted = hn::Add(x, All(1.5F * kRounder));
    const Float fraction = hn::Sub(x, hn::Sub(shifted, All(1.5F * kRounder)));
    const auto exponent = hn::ShiftLeft<23>(hn::BitCast(Ints(), shifted));
    const auto mantissa = hn::BitCast(Ints(), Polynomial(fraction, kCoefficients));
    return hn::BitCast(Floats(), hn::Add(mantissa, exponent));
}

/// `Power` of 0 <= x <= 1, at most 1; off by less than 5e-6 * (1 + power) of the value.
HWY_INLINE Float PowerOf(Float x, const Power& power) {
    if (power.least) {
        const Float some = hn::Max(x, All(*power.least));
        const Float log = hn::MulAdd(Log2(some), All(power.power), All(power.offset));
        return Exp2(hn::Min(log, hn::Zero(Floats())));
    }
    const Float log = hn::MulAdd(Log2(x), All(power.power), All(power.offset));
    const Float result = Exp2(hn::Min(hn::Max(log, All(-126)), hn::Zero(Floats())));
    return hn::IfThenElse(hn::Gt(x, hn::Zero(Floats())), result, All(power.ofZero));
}

HWY_INLINE Color Transform(const std::array<float, 9>& m, const Color& c) {
    const auto row = [&](std::size_t i) {
        return Clamped(hn::MulAdd(c.r, All(m[i]),
                                  hn::MulAdd(c.g, All(m[i + 1]), hn::Mul(c.b, All(m[i + 2])))));
    };
    return {row(0), row(3), row(6)};
}

HWY_INLINE Color WithLook(const PhotoLook& look, Color color) {
    color = Transform(look.matrix, color);
    const Float grey = Luminance(color);
    const Float boost = All(4 * look.vividness);
    color = ForEach(color, [&](Float c) {
        const Float room = hn::NegMulAdd(c, c, c);
        return Clamped(hn::MulAdd(hn::Mul(boost, room), hn::Sub(c, grey), c));
    });
    return {Clamped(Polynomial(color.r, look.curve[0])),
            Clamped(Polynomial(color.g, look.curve[1])),
            Clamped(Polynomial(color.b, look.curve[2]))};
}

/// `tone` is `ToneOfBytes` of the steps.
HWY_INLINE Color WithSteps(const ColorSteps& steps, const std::optional<LimitedLinear>& tone,
                           Word pixels) {
    Color color = BytesOf(pixels);
    if (tone) {
        color = ForEach(color, [&](Float c) {
            const Float value = hn::MulAdd(c, All(tone->factor), All(tone->offset));
            return hn::Min(hn::Max(value, All(tone->low)), All(tone->high));
        });
    } else {
        color = ForEach(color, [](Float c) { return hn::Mul(c, All(1.0F / 255)); });
    }
    if (steps.saturation) {
        const Float factor = All(steps.saturation->factor);
        const float share = steps.saturation->offset;
        const Float grey = hn::MulAdd(color.r, All(kRedWeight * share),
                                      hn::MulAdd(color.g, All(kGreenWeight * share),
                                                 hn::Mul(color.b, All(kBlueWeight * share))));
        color = ForEach(color, [&](Float c) { return Clamped(hn::MulAdd(c, factor, grey)); });
    }
    if (steps.exposureFactor) {
        const Float factor = All(*steps.exposureFactor);
        color = ForEach(color, [&](Float c) { return hn::Min(hn::Mul(c, factor), All(1)); });
    }
    if (steps.gamma) {
        color = ForEach(color, [&](Float c) { return PowerOf(c, *steps.gamma); });
    }
    if (steps.hueMatrix) {
        color = Transform(*steps.hueMatrix, color);
    }
    if (steps.look) {
        color = WithLook(*steps.look, color);
    }
    if (steps.quantization) {
        color = Quantized(color, *steps.quantization);
    }
    return color;
}

inline void ColorRow(const ColorSteps& steps, const VignetteRow* vignette, const std::uint8_t* in,
                     std::uint8_t* out, std::size_t n) {
    const auto tone = ToneOfBytes(steps);
    const auto make = [&](std::size_t x, Word pixels) {
        Color color = WithSteps(steps, tone, pixels);
        if (vignette != nullptr) {
            const Float factor = VignetteFactor(*vignette, x);
            color = ForEach(color, [&](Float c) { return hn::Mul(c, factor); });
        }
        return PixelsOf(color, pixels);
    };
    MakePixels(out, n, make, in);
}

inline void BlendRow(const std::uint8_t* base, const std::uint8_t* overlay, float mix,
                     std::uint8_t* out, std::size_t n) {
    const auto make = [&](std::size_t, Word below, Word above) {
        const Color from = ColorOf(below);
        const Color to = ColorOf(above);
        const Float part = hn::Mul(AlphaOf(above), All(mix));
        const auto blend = [&](Float a, Float b) {
            return Clamped(hn::MulAdd(hn::Sub(b, a), part, a));
        };
        const Color color = {blend(from.r, to.r), blend(from.g, to.g), blend(from.b, to.b)};
        return PixelsOf(color, below);
    };
    MakePixels(out, n, make, base, overlay);
}

inline void LoadRow(const ColorSteps& steps, bool premultiplied, const std::uint8_t* in,
                    const Planes& out, std::size_t n) {
    const Floats d;
    const std::size_t lanes = hn::Lanes(d);
    const Tail tail(in, n);
    const auto tone = ToneOfBytes(steps);
    for (std::size_t x = 0; x < n; x += lanes) {
        const Word pixels = LoadPixels(x + lanes <= n ? in + 4 * x : tail.data());
        Color color = WithSteps(steps, tone, pixels);
        const Float alpha = AlphaOf(pixels);
        if (premultiplied) {
            color = ForEach(color, [&](Float c) { return hn::Mul(c, alpha); });
        }
        StorePlanes(color, out, x);
        hn::StoreU(alpha, d, out[3] + x);
    }
}

inline void StoreRow(const Planes& in, const VignetteRow* vignette, const std::uint8_t* alphaFrom,
                     std::uint8_t* out, std::size_t n) {
    const auto color = [&](std::size_t x) {
        const Color straight = LoadPlanes(in, x);
        if (vignette == nullptr) {
            return straight;
        }
        const Float factor = VignetteFactor(*vignette, x);
        return ForEach(straight, [&](Float c) { return hn::Mul(c, factor); });
    };
    if (alphaFrom == nullptr) {
        const Word opaque = hn::Set(Words(), 0xFF000000U);
        MakePixels(out, n, [&](std::size_t x) { return PixelsOf(color(x), opaque); });
    } else {
        const auto make = [&](std::size_t x, Word alpha) { return PixelsOf(color(x), alpha); };
        MakePixels(out, n, make, alphaFrom);
    }
}

}  // namespace lumirra::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif  // the guard above
