// Included once for each machine level.
#if defined(LUMIRRA_OUTPUT_GIF_SEARCH_CANDIDATES) == defined(HWY_TARGET_TOGGLE)
#ifdef LUMIRRA_OUTPUT_GIF_SEARCH_CANDIDATES
#undef LUMIRRA_OUTPUT_GIF_SEARCH_CANDIDATES
#else
#define LUMIRRA_OUTPUT_GIF_SEARCH_CANDIDATES
#endif

#include <hwy/highway.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "output/gif/lzw/PixelRow.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::gif::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Colours compared at once.
constexpr std::size_t kGroup = 16;
/// Colours that a string may begin with.
constexpr std::size_t kCandidates = 16;

/// The best few single pixels, best first.
class Candidates {
  public:
    Candidates() { errors_.fill(2 * kNeverDrawn); }

    void Offer(float error, unsigned code) {
        std::size_t at = count_;
        if (count_ < kCandidates) {
            ++count_;
        } else if (error < worst_) {
            at = worstAt_;
        } else {
            return;
        }
        errors_[at] = error;
        codes_[at] = static_cast<std::uint16_t>(code);
        if (count_ == kCandidates) {
            FindWorst();
        }
    }
    /// What is not better than this is of no use.
    float Worst() const { return worst_; }
    std::size_t Count() const { return count_; }
    float Error(std::size_t i) const { return errors_[order_[i]]; }
    unsigned Code(std::size_t i) const { return codes_[order_[i]]; }

    /// By counting for each how many come before it: no branch to guess.
    void Sort() {
        const hn::CappedTag<float, kGroup> d;
        for (std::size_t i = 0; i < count_; ++i) {
            const auto error = hn::Set(d, errors_[i]);
            std::size_t before = 0;
            for (std::size_t lane = 0; lane < kCandidates; lane += hn::Lanes(d)) {
                const auto others = hn::Load(d, &errors_[lane]);
                const auto first = hn::FirstN(d, i > lane ? i - lane : 0);
                before += hn::CountTrue(
                    d, hn::Or(hn::Lt(others, error), hn::And(hn::Eq(others, error), first)));
            }
            order_[before] = static_cast<std::uint8_t>(i);
        }
    }

  private:
    void FindWorst() {
        const hn::CappedTag<float, kGroup> d;
        auto largest = hn::Load(d, errors_.data());
        for (std::size_t lane = hn::Lanes(d); lane < kCandidates; lane += hn::Lanes(d)) {
            largest = hn::Max(largest, hn::Load(d, &errors_[lane]));
        }
        largest = hn::MaxOfLanes(d, largest);
        worst_ = hn::GetLane(largest);
        for (std::size_t lane = 0; lane < kCandidates; lane += hn::Lanes(d)) {
            const auto at = hn::FindFirstTrue(d, hn::Eq(hn::Load(d, &errors_[lane]), largest));
            if (at >= 0) {
                worstAt_ = lane + static_cast<std::size_t>(at);
                return;
            }
        }
    }

    alignas(64) std::array<float, kCandidates> errors_;
    std::array<std::uint16_t, kCandidates> codes_;
    std::array<std::uint8_t, kCandidates> order_;
    std::size_t count_ = 0;
    float worst_ = 4 * kNeverDrawn;
    std::size_t worstAt_ = 0;
};

}  // namespace lumirra::gif::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
