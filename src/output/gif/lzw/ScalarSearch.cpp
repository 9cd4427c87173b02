#include <algorithm>
#include <array>

#include "output/gif/ScalarKernels.h"
#include "output/gif/lzw/LossyLzwSearch-inl.h"

namespace lumirra::gif::scalar {

namespace {

constexpr std::size_t kCandidates = 16;

/// The best few single pixels, best first.
class BestFew {
  public:
    void Offer(float error, unsigned code) {
        if (count_ < kCandidates) {
            entries_[count_++] = {error, code};
            return;
        }
        const auto worst =
            std::max_element(entries_.begin(), entries_.end(),
                             [](const Entry& a, const Entry& b) { return a.error < b.error; });
        if (error < worst->error) {
            *worst = {error, code};
        }
    }
    std::size_t Count() const { return count_; }
    float Error(std::size_t i) const { return entries_[i].error; }
    unsigned Code(std::size_t i) const { return entries_[i].code; }
    void Sort() {
        std::stable_sort(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(count_),
                         [](const Entry& a, const Entry& b) { return a.error < b.error; });
    }

  private:
    struct Entry {
        float error = 0;
        unsigned code = 0;
    };
    std::array<Entry, kCandidates> entries_{};
    std::size_t count_ = 0;
};

struct PlainKernels {
    using Candidates = BestFew;

    static float Errors(const ColorPlanes& colors, const SearchPixel& pixel, float* errors) {
        float least = 2 * kNeverDrawn;
        for (std::size_t i = 0; i < colors.count; ++i) {
            errors[i] = pixel.weight *
                        SquaredDistance({colors.y[i], colors.u[i], colors.v[i]}, pixel.target);
            least = std::min(least, errors[i]);
        }
        return least;
    }

    static void Collect(const float* errors, std::size_t count, float limit,
                        Candidates& candidates) {
        for (std::size_t i = 0; i < count; ++i) {
            if (errors[i] <= limit) {
                candidates.Offer(errors[i], static_cast<unsigned>(i));
            }
        }
    }

    static unsigned ErrorsBelow(const LzwDictionary::Block& block, const Yuv& target, float weight,
                                float limit,
                                std::array<float, LzwDictionary::kBlockLanes>& errors) {
        unsigned bits = 0;
        for (std::size_t i = 0; i < errors.size(); ++i) {
            errors[i] = weight * SquaredDistance({block.y[i], block.u[i], block.v[i]}, target);
            bits |= errors[i] < limit ? 1U << i : 0U;
        }
        return bits;
    }

    static void PreparePixels(const PixelRow& row, const SearchTuning& tuning, SearchPixel* out) {
        scalar::PreparePixels(row, tuning, out);
    }
};

}  // namespace

bool SearchLossyLzw(const SearchJob& job, Screen& screen, std::vector<std::uint8_t>& data) {
    return HWY_NAMESPACE::Searcher<PlainKernels>(job, screen, data).Run();
}

}  // namespace lumirra::gif::scalar
