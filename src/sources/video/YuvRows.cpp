#include "sources/video/YuvRows.h"

#include <algorithm>

#include "imaging/kernels/RowKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "sources/video/YuvRows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once for each instruction set
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace lumirra {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Products are added in separate steps: fused ones would round differently on other machines.
template <class D>
void Convert(D d, const YuvMatrix& matrix, const std::uint8_t* luma, const std::int16_t* u,
             const std::int16_t* v, std::uint8_t* rgba, std::size_t width) {
    const hn::Rebind<std::int32_t, D> d32;
    const hn::Rebind<std::int16_t, D> d16;
    const hn::Rebind<std::uint8_t, D> d8;
    const std::size_t lanes = hn::Lanes(d);
    const auto offset = hn::Set(d, 0.5F - matrix.lumaOffset * matrix.luma);
    const auto level = [&](auto value) {
        const auto bounded = hn::Min(hn::Max(value, hn::Zero(d)), hn::Set(d, 255.5F));
        return hn::DemoteTo(d8, hn::ConvertTo(d32, bounded));
    };
    for (std::size_t x = 0; x + lanes <= width; x += lanes) {
        const auto y8 = hn::ConvertTo(d, hn::PromoteTo(d32, hn::LoadU(d8, luma + x)));
        const auto y = hn::Add(hn::Mul(y8, hn::Set(d, matrix.luma)), offset);
        const auto cb = hn::ConvertTo(d, hn::PromoteTo(d32, hn::LoadU(d16, u + x)));
        const auto cr = hn::ConvertTo(d, hn::PromoteTo(d32, hn::LoadU(d16, v + x)));
        const auto r = hn::Add(y, hn::Mul(cr, hn::Set(d, matrix.redOfV)));
        const auto g = hn::Add(hn::Add(y, hn::Mul(cb, hn::Set(d, matrix.greenOfU))),
                               hn::Mul(cr, hn::Set(d, matrix.greenOfV)));
        const auto b = hn::Add(y, hn::Mul(cb, hn::Set(d, matrix.blueOfU)));
        hn::StoreInterleaved4(level(r), level(g), level(b), hn::Set(d8, 255), d8, rgba + 4 * x);
    }
}

void ConvertRow(const YuvMatrix& matrix, const std::uint8_t* luma, const std::int16_t* u,
                const std::int16_t* v, std::uint8_t* rgba, std::size_t width) {
    const hn::ScalableTag<float> d;
    Convert(d, matrix, luma, u, v, rgba, width);
    const std::size_t done = width / hn::Lanes(d) * hn::Lanes(d);
    Convert(hn::CappedTag<float, 1>(), matrix, luma + done, u + done, v + done, rgba + 4 * done,
            width - done);
}

}  // namespace HWY_NAMESPACE
}  // namespace lumirra
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumirra {

HWY_EXPORT(ConvertRow);

void ConvertYuvRow(const YuvMatrix& matrix, const std::uint8_t* luma, const std::int16_t* u,
                   const std::int16_t* v, std::uint8_t* rgba, std::size_t width) {
    static const bool plain = &Kernels() == &ScalarKernels();
    if (plain) {
        ConvertYuvRowPlainly(matrix, luma, u, v, rgba, width);
    } else {
        HWY_DYNAMIC_DISPATCH(ConvertRow)(matrix, luma, u, v, rgba, width);
    }
}

void ConvertYuvRowPlainly(const YuvMatrix& matrix, const std::uint8_t* luma, const std::int16_t* u,
                          const std::int16_t* v, std::uint8_t* rgba, std::size_t width) {
    const float offset = 0.5F - matrix.lumaOffset * matrix.luma;
    const auto level = [](float value) {
        return static_cast<std::uint8_t>(std::clamp(value, 0.0F, 255.5F));
    };
    for (std::size_t x = 0; x < width; ++x, rgba += 4) {
        const float y = static_cast<float>(luma[x]) * matrix.luma + offset;
        const auto cb = static_cast<float>(u[x]);
        const auto cr = static_cast<float>(v[x]);
        rgba[0] = level(y + cr * matrix.redOfV);
        rgba[1] = level(y + cb * matrix.greenOfU + cr * matrix.greenOfV);
        rgba[2] = level(y + cb * matrix.blueOfU);
        rgba[3] = 255;
    }
}

}  // namespace lumirra
#endif
