// Colours in vector registers, shared by the kernel files; compiled once for each target.

#include <algorithm>

#include "imaging/kernels/RowKernels.h"

// The guard flips each time the file is taken in, once for each target.
#if defined(LUMIRRA_IMAGING_PIXELS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef LUMIRRA_IMAGING_PIXELS_INL_H_
#undef LUMIRRA_IMAGING_PIXELS_INL_H_
#else
#define LUMIRRA_IMAGING_PIXELS_INL_H_
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumirra::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// At most sixteen lanes, which bounds what planes need as slack.
using Floats = hn::CappedTag<float, 16>;
using Words = hn::RebindToUnsigned<Floats>;
using Ints = hn::RebindToSigned<Floats>;
using Bytes = hn::Repartition<std::uint8_t, Floats>;
using Float = hn::Vec<Floats>;
using Word = hn::Vec<Words>;

struct Color {
    Float r;
    Float g;
    Float b;
};

HWY_INLINE Float All(float value) {
    return hn::Set(Floats(), value);
}

HWY_INLINE Float Clamped(Float value) {
    return hn::Min(hn::Max(value, hn::Zero(Floats())), All(1));
}

template <typename Change>
HWY_INLINE Color ForEach(const Color& c, const Change& change) {
    return {change(c.r), change(c.g), change(c.b)};
}

HWY_INLINE Float Luminance(const Color& c) {
    return hn::MulAdd(c.r, All(kRedWeight),
                      hn::MulAdd(c.g, All(kGreenWeight), hn::Mul(c.b, All(kBlueWeight))));
}

HWY_INLINE Color Quantized(const Color& color, float q) {
    const Float scale = All(q);
    const Float inverse = All(q == 0 ? 0 : 1 / q);
    return ForEach(color, [&](Float c) {
        return Clamped(hn::Mul(hn::Floor(hn::MulAdd(c, scale, All(0.5F))), inverse));
    });
}

/// 1 - smoothstep at the pixels from column `x` on.
HWY_INLINE Float VignetteFactor(const VignetteRow& vignette, std::size_t x) {
    const Floats d;
    const Float column = hn::Iota(d, static_cast<float>(x) + 0.5F);
    const Float across = hn::MulAdd(column, All(vignette.columnStep), All(-0.5F));
    const Float distance = hn::Sqrt(hn::MulAdd(across, across, All(vignette.squaredRowDistance)));
    const Float t = Clamped(hn::Mul(hn::Sub(distance, All(vignette.start)), All(4)));
    return hn::NegMulAdd(hn::Mul(t, t), hn::NegMulAdd(All(2), t, All(3)), All(1));
}

/// Whole pixels as words: red in the lowest byte, alpha in the highest.
HWY_INLINE Word LoadPixels(const std::uint8_t* in) {
    return hn::BitCast(Words(), hn::LoadU(Bytes(), in));
}

HWY_INLINE void StorePixels(Word pixels, std::uint8_t* out) {
    hn::StoreU(hn::BitCast(Bytes(), pixels), Bytes(), out);
}

/// The lowest byte of each word as a number 0..255.
HWY_INLINE Float LowByte(Word words) {
    const Word byte = hn::And(words, hn::Set(Words(), 0xFF));
    return hn::ConvertTo(Floats(), hn::BitCast(Ints(), byte));
}

/// 0..255.
HWY_INLINE Color BytesOf(Word pixels) {
    constexpr std::uint8_t o = 0x80;  // gives a zero
    alignas(16) static constexpr std::uint8_t kPlaces[3][16] = {
        {0, o, o, o, 4, o, o, o, 8, o, o, o, 12, o, o, o},
        {1, o, o, o, 5, o, o, o, 9, o, o, o, 13, o, o, o},
        {2, o, o, o, 6, o, o, o, 10, o, o, o, 14, o, o, o}};
    const auto channel = [&](std::size_t i) {
        const auto bytes = hn::TableLookupBytesOr0(hn::BitCast(Bytes(), pixels),
                                                   hn::LoadDup128(Bytes(), kPlaces[i]));
        return hn::ConvertTo(Floats(), hn::BitCast(Ints(), bytes));
    };
    return {channel(0), channel(1), channel(2)};
}

HWY_INLINE Color ColorOf(Word pixels) {
    return ForEach(BytesOf(pixels), [](Float c) { return hn::Mul(c, All(1.0F / 255)); });
}

HWY_INLINE Float AlphaOf(Word pixels) {
    return hn::Mul(LowByte(hn::ShiftRight<24>(pixels)), All(1.0F / 255));
}

/// 2^23: a float of this size has its whole number in its lowest bits.
constexpr float kRounder = 8388608;

/// Colours of 0..1 rounded to bytes, with the highest byte of `alphaFrom`.
HWY_INLINE Word PixelsOf(const Color& color, Word alphaFrom) {
    // The sum rounds; a shift by a byte or more drops the bits that are not the number.
    const auto rounded = [](Float c) {
        return hn::BitCast(Words(), hn::MulAdd(c, All(255), All(kRounder)));
    };
    const Word green = hn::ShiftLeft<8>(rounded(color.g));
    const Word blue = hn::ShiftLeft<16>(rounded(color.b));
    const Word most = hn::OrAnd(hn::Or(green, blue), rounded(color.r), hn::Set(Words(), 0xFF));
    return hn::OrAnd(most, alphaFrom, hn::Set(Words(), 0xFF000000U));
}

HWY_INLINE Color LoadPlanes(const Planes& row, std::size_t x) {
    const Floats d;
    return {hn::LoadU(d, row[0] + x), hn::LoadU(d, row[1] + x), hn::LoadU(d, row[2] + x)};
}

HWY_INLINE void StorePlanes(const Color& color, const Planes& row, std::size_t x) {
    const Floats d;
    hn::StoreU(color.r, d, row[0] + x);
    hn::StoreU(color.g, d, row[1] + x);
    hn::StoreU(color.b, d, row[2] + x);
}

/// The pixels of a row that do not fill a vector, with room to be read as one.
class Tail {
  public:
    Tail(const std::uint8_t* row, std::size_t n) {
        const std::size_t rest = n % hn::Lanes(Floats());
        std::copy_n(row + 4 * (n - rest), 4 * rest, bytes_);
    }
    const std::uint8_t* data() const { return bytes_; }

  private:
    HWY_ALIGN std::uint8_t bytes_[4 * hn::MaxLanes(Floats())] = {};
};

/// Writes n pixels to `out`: make(x, words...) gives the vector of them at pixel x, from those of
/// the RGBA8 rows `in`. The last, partial vector takes the same way through buffers, so that a
/// pixel does not depend on its place in the row.
template <typename Make, typename... Rows>
HWY_INLINE void MakePixels(std::uint8_t* out, std::size_t n, const Make& make, Rows... in) {
    const std::size_t lanes = hn::Lanes(Floats());
    std::size_t x = 0;
    for (; x + lanes <= n; x += lanes) {
        StorePixels(make(x, LoadPixels(in + 4 * x)...), out + 4 * x);
    }
    if (x < n) {
        HWY_ALIGN std::uint8_t last[4 * hn::MaxLanes(Floats())];
        StorePixels(make(x, LoadPixels(Tail(in, n).data())...), last);
        std::copy_n(last, 4 * (n - x), out + 4 * x);
    }
}

}  // namespace lumirra::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif  // the guard above
