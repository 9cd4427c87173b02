#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "output/gif/denoise/UnchangedMask.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
// The rest is compiled once for each machine level.
#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "output/gif/ScalarKernels.h"
#include "output/gif/denoise/UnchangedMask.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::gif::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr std::size_t kChannels = 4;
using Samples = hn::ScalableTag<std::int16_t>;

/// Channel differences of two pictures, row by row. Rows are padded to whole vectors.
class DifferenceRows {
  public:
    DifferenceRows(const Canvas& a, const Canvas& b)
        : a_(a),
          b_(b),
          samples_(static_cast<std::size_t>(a.width) * kChannels),
          padded_(hwy::RoundUpTo(samples_, hn::Lanes(Samples()))) {
        for (auto& row : rows_) {
            row.resize(padded_);
        }
        column_.resize(padded_ + 2 * kChannels);
        moved_.resize(padded_);
    }

    void Load(int y) {
        const auto* from = reinterpret_cast<const std::uint8_t*>(a_.Row(y));
        const auto* other = reinterpret_cast<const std::uint8_t*>(b_.Row(y));
        std::int16_t* out = Row(y);
        const Samples d;
        const hn::Rebind<std::uint8_t, Samples> bytes;
        std::size_t i = 0;
        for (; i + hn::Lanes(d) <= samples_; i += hn::Lanes(d)) {
            hn::StoreU(hn::Sub(hn::PromoteTo(d, hn::LoadU(bytes, from + i)),
                               hn::PromoteTo(d, hn::LoadU(bytes, other + i))),
                       d, out + i);
        }
        for (; i < samples_; ++i) {
            out[i] = static_cast<std::int16_t>(from[i] - other[i]);
        }
    }

    /// 1 or 0 for each pixel of row `y`, whose neighbours must be loaded.
    void Test(int y, const DenoiseTuning& tuning, std::uint8_t* out) {
        SumColumns(y);
        const Samples d;
        // Alpha has to be the same, whatever surrounds it.
        const auto limits = [&](int color, int alpha) {
            const auto c = static_cast<std::uint64_t>(color);
            const std::uint64_t all =
                c | c << 16U | c << 32U | static_cast<std::uint64_t>(alpha) << 48U;
            return hn::BitCast(
                d,
                hn::Set(
                    hn::RepartitionToWide<hn::RepartitionToWide<hn::RebindToUnsigned<Samples>>>(),
                    all));
        };
        const auto ownLimit = limits(tuning.pixelLimit, 0);
        const auto areaLimit = limits(tuning.areaLimit, 9 * 255);
        const std::int16_t* own = Row(y);
        for (std::size_t i = 0; i < samples_; i += hn::Lanes(d)) {
            const auto sum =
                hn::Add(hn::Add(hn::LoadU(d, &column_[i]), hn::LoadU(d, &column_[i + kChannels])),
                        hn::LoadU(d, &column_[i + 2 * kChannels]));
            const auto moved = hn::Or(hn::Gt(hn::Abs(hn::LoadU(d, own + i)), ownLimit),
                                      hn::Gt(hn::Abs(sum), areaLimit));
            hn::StoreU(hn::VecFromMask(d, moved), d, &moved_[i]);
        }
        for (std::size_t x = 0; x < static_cast<std::size_t>(a_.width); ++x) {
            std::uint64_t pixel = 0;
            std::memcpy(&pixel, &moved_[x * kChannels], sizeof(pixel));
            out[x] = pixel == 0 ? 1 : 0;
        }
    }

  private:
    std::int16_t* Row(int y) { return rows_[static_cast<std::size_t>(y % 3)].data(); }

    /// Over three rows, with one pixel of border at each end that repeats the last.
    void SumColumns(int y) {
        const std::int16_t* above = Row(std::max(y - 1, 0));
        const std::int16_t* middle = Row(y);
        const std::int16_t* below = Row(std::min(y + 1, a_.height - 1));
        std::int16_t* column = column_.data() + kChannels;
        const Samples d;
        for (std::size_t i = 0; i < samples_; i += hn::Lanes(d)) {
            hn::StoreU(hn::Add(hn::Add(hn::LoadU(d, above + i), hn::LoadU(d, middle + i)),
                               hn::LoadU(d, below + i)),
                       d, column + i);
        }
        std::copy_n(column, kChannels, column_.data());
        std::copy_n(column + samples_ - kChannels, kChannels, column + samples_);
    }

    const Canvas& a_;
    const Canvas& b_;
    std::size_t samples_;
    std::size_t padded_;
    std::array<std::vector<std::int16_t>, 3> rows_;
    std::vector<std::int16_t> column_;
    std::vector<std::int16_t> moved_;
};

void TestPictures(const Canvas& a, const Canvas& b, const DenoiseTuning& tuning,
                  std::uint8_t* mask) {
    DifferenceRows rows(a, b);
    rows.Load(0);
    for (int y = 0; y < a.height; ++y) {
        if (y + 1 < a.height) {
            rows.Load(y + 1);
        }
        rows.Test(y, tuning,
                  mask + static_cast<std::size_t>(y) * static_cast<std::size_t>(a.width));
    }
}

}  // namespace lumirra::gif::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumirra::gif {

HWY_EXPORT(TestPictures);

void UnchangedMask(const Canvas& a, const Canvas& b, const DenoiseTuning& tuning,
                   std::vector<std::uint8_t>& mask) {
    if (scalar::IsForced()) {
        scalar::UnchangedMask(a, b, tuning, mask);
        return;
    }
    mask.resize(a.Size());
    HWY_DYNAMIC_DISPATCH(TestPictures)(a, b, tuning, mask.data());
}

}  // namespace lumirra::gif
#endif
