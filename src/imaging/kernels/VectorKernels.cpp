#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/kernels/VectorKernels.cpp"
#include <hwy/foreach_target.h>  // before highway.h
#include <hwy/highway.h>

// A machine without a vector unit that the library knows runs the plain loops.
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
#include "imaging/kernels/RowKernels.h"
#else
#include "imaging/kernels/ColorRows-inl.h"
#include "imaging/kernels/EdgeRows-inl.h"
#endif

HWY_BEFORE_NAMESPACE();
namespace lumirra::HWY_NAMESPACE {

const RowKernels* TargetKernels() {
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
    return &ScalarKernels();
#else
    static constexpr RowKernels kernels = {
        HWY_STR(HWY_NAMESPACE), ColorRow,     BlendRow, LoadRow,   BlurAlongRow,
        BlurAcrossRows,         LuminanceRow, ToonRow,  SketchRow, StoreRow};
    return &kernels;
#endif
}

}  // namespace lumirra::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumirra {

HWY_EXPORT(TargetKernels);

const RowKernels& VectorKernels() {
    return *HWY_DYNAMIC_DISPATCH(TargetKernels)();
}

}  // namespace lumirra
#endif
