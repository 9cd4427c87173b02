#include "output/gif/Goal.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace lumirra::gif {

namespace {

constexpr std::size_t kChannels = 4;
/// Difference written where one picture has a pixel and the other has none.
constexpr std::int16_t kApart = 1000;

/// Channel differences of one row, with one pixel of border at each end that repeats the last.
class DifferenceRows {
  public:
    DifferenceRows(const Picture& a, const Picture& b)
        : a_(a), b_(b), samples_(static_cast<std::size_t>(a.width) * kChannels) {
        for (auto& row : rows_) {
            row.resize(samples_);
        }
        column_.resize(samples_ + 2 * kChannels);
    }

    const std::int16_t* Row(int y) const { return rows_[static_cast<std::size_t>(y % 3)].data(); }

    void Load(int y) {
        const Rgba* from = a_.Row(y);
        const Rgba* other = b_.Row(y);
        std::int16_t* out = rows_[static_cast<std::size_t>(y % 3)].data();
        for (int x = 0; x < a_.width; ++x) {
            const std::size_t at = static_cast<std::size_t>(x) * kChannels;
            out[at] = static_cast<std::int16_t>(from[x].r - other[x].r);
            out[at + 1] = static_cast<std::int16_t>(from[x].g - other[x].g);
            out[at + 2] = static_cast<std::int16_t>(from[x].b - other[x].b);
            out[at + 3] = from[x].a == other[x].a ? std::int16_t{0} : kApart;
        }
    }

    /// Sums over 3 x 3 pixels around row `y`, whose neighbours must be loaded.
    void SumAround(int y, std::vector<std::int16_t>& sums) {
        const std::int16_t* above = Row(std::max(y - 1, 0));
        const std::int16_t* middle = Row(y);
        const std::int16_t* below = Row(std::min(y + 1, a_.height - 1));
        std::int16_t* column = column_.data() + kChannels;
        for (std::size_t i = 0; i < samples_; ++i) {
            column[i] = static_cast<std::int16_t>(above[i] + middle[i] + below[i]);
        }
        std::copy_n(column, kChannels, column_.data());
        std::copy_n(column + samples_ - kChannels, kChannels, column + samples_);
        for (std::size_t i = 0; i < samples_; ++i) {
            sums[i] = static_cast<std::int16_t>(column_[i] + column_[i + kChannels] +
                                                column_[i + 2 * kChannels]);
        }
    }

  private:
    const Picture& a_;
    const Picture& b_;
    std::size_t samples_;
    std::array<std::vector<std::int16_t>, 3> rows_;
    std::vector<std::int16_t> column_;
};

}  // namespace

void StillMask(const Picture& a, const Picture& b, const GoalTuning& tuning,
               std::vector<std::uint8_t>& mask) {
    const auto width = static_cast<std::size_t>(a.width);
    mask.resize(a.Size());
    DifferenceRows rows(a, b);
    std::vector<std::int16_t> sums(width * kChannels);
    rows.Load(0);
    for (int y = 0; y < a.height; ++y) {
        if (y + 1 < a.height) {
            rows.Load(y + 1);
        }
        rows.SumAround(y, sums);
        const std::int16_t* own = rows.Row(y);
        std::uint8_t* out = mask.data() + static_cast<std::size_t>(y) * width;
        const int areaLimit = tuning.areaLimit * 9;
        for (std::size_t x = 0; x < width; ++x) {
            const std::size_t at = x * kChannels;
            int still = own[at + 3] == 0 ? 1 : 0;
            for (std::size_t c = 0; c < 3; ++c) {
                still &= static_cast<int>(std::abs(own[at + c]) <= tuning.pixelLimit) &
                         static_cast<int>(std::abs(sums[at + c]) <= areaLimit);
            }
            out[x] = static_cast<std::uint8_t>(still);
        }
    }
}

GoalMaker::Result GoalMaker::Next(const std::vector<const Picture*>& window) {
    const Picture& frame = *window.front();
    const std::size_t size = frame.Size();
    std::vector<std::array<std::uint16_t, 3>> sums(size);
    std::vector<std::uint8_t> counts(size, 1);
    std::vector<std::uint8_t> still;
    for (std::size_t i = 0; i < size; ++i) {
        const Rgba& color = frame.pixels[i];
        sums[i] = {color.r, color.g, color.b};
    }
    std::vector<std::uint8_t> open(size, 1);
    for (std::size_t ahead = 1;
         ahead < window.size() && ahead <= static_cast<std::size_t>(tuning_.lookAhead); ++ahead) {
        StillMask(frame, *window[ahead], tuning_, still);
        for (std::size_t i = 0; i < size; ++i) {
            open[i] &= still[i];
            if (open[i] != 0) {
                const Rgba& color = window[ahead]->pixels[i];
                sums[i][0] = static_cast<std::uint16_t>(sums[i][0] + color.r);
                sums[i][1] = static_cast<std::uint16_t>(sums[i][1] + color.g);
                sums[i][2] = static_cast<std::uint16_t>(sums[i][2] + color.b);
                ++counts[i];
            }
        }
    }
    const bool hasLast = last_.Size() == size;
    if (hasLast) {
        StillMask(frame, last_, tuning_, still);
    } else {
        still.assign(size, 0);
        last_ = frame;
    }
    for (std::size_t i = 0; i < size; ++i) {
        if (still[i] != 0) {
            continue;
        }
        const unsigned count = counts[i];
        const auto mean = [&](std::size_t c) {
            return static_cast<std::uint8_t>((sums[i][c] + count / 2) / count);
        };
        last_.pixels[i] = {mean(0), mean(1), mean(2), frame.pixels[i].a};
    }
    for (std::uint8_t& value : still) {
        value ^= 1U;
    }
    return {last_, std::move(still), std::move(counts)};
}

GoalMaker::Result GoalMaker::NextExact(const Picture& frame) {
    std::vector<std::uint8_t> moved(frame.Size(), 1);
    if (last_.Size() == frame.Size()) {
        for (std::size_t i = 0; i < moved.size(); ++i) {
            moved[i] = last_.pixels[i] == frame.pixels[i] ? 0 : 1;
        }
    }
    last_ = frame;
    return {frame, std::move(moved), std::vector<std::uint8_t>(frame.Size(), 1)};
}

}  // namespace lumirra::gif
