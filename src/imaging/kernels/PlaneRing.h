#pragma once

#include <hwy/aligned_allocator.h>

#include <algorithm>
#include <cstddef>
#include <new>

#include "imaging/kernels/RowKernels.h"

namespace lumirra {

/// Float rows of a picture, four planes each, of which the last `slots` made are kept: a row takes
/// the place of the one `slots` rows above it. Each plane has room for `margin` floats before its
/// first pixel, and for `margin` + `kPlaneSlack` after its last one.
class PlaneRing {
  public:
    PlaneRing(int slots, int width, int margin)
        : slots_(static_cast<std::size_t>(slots)),
          width_(static_cast<std::size_t>(width)),
          margin_(static_cast<std::size_t>(margin)),
          lead_((margin_ + kLine - 1) / kLine * kLine),
          // An odd number of cache lines: rows one above the other do not compete for one place.
          stride_(((lead_ + width_ + margin_ + kPlaneSlack) / kLine | 1) * kLine + 2 * kLine),
          floats_(hwy::AllocateAligned<float>(4 * slots_ * stride_)) {
        if (floats_ == nullptr) {
            throw std::bad_alloc();
        }
        std::fill_n(floats_.get(), 4 * slots_ * stride_, 0.0F);
    }

    Planes Row(int y) const {
        float* first = floats_.get() + static_cast<std::size_t>(y) % slots_ * stride_ + lead_;
        const std::size_t plane = slots_ * stride_;
        return {first, first + plane, first + 2 * plane, first + 3 * plane};
    }

    /// Repeats the first and the last pixel of a plane over `count` <= margin floats beyond it.
    void ExtendEnds(float* plane, int count) const {
        std::fill_n(plane - count, count, plane[0]);
        std::fill_n(plane + width_, count, plane[width_ - 1]);
    }

  private:
    static constexpr std::size_t kLine = 16;  // floats in a cache line

    std::size_t slots_;
    std::size_t width_;
    std::size_t margin_;
    std::size_t lead_;
    std::size_t stride_;
    hwy::AlignedFreeUniquePtr<float[]> floats_;
};

}  // namespace lumirra
