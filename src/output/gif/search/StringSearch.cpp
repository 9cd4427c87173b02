#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "output/gif/search/StringSearch.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
// The rest is compiled once for each machine level.
#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <optional>

#include "output/gif/Tone.h"
#include "output/gif/file/CodeWriter.h"
#include "output/gif/search/Candidates-inl.h"
#include "output/gif/search/Dictionary.h"
#include "output/gif/search/PixelRow.h"
#include "output/gif/search/StringSearch.h"
#include "output/gif/target/Masking.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::gif::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr float kNever = kNeverDrawn;
constexpr float kLargestPassedOn = 48;
constexpr std::size_t kMaxColors = 256;
using Pixel = SearchPixel;

HWY_INLINE Tone Minus(const Tone& a, const Tone& b) {
    return {a.y - b.y, a.u - b.u, a.v - b.v};
}

HWY_INLINE float Limited(float value) {
    return std::clamp(value, -kLargestPassedOn, kLargestPassedOn);
}

/// Masked squared distances of a block's children from a colour.
template <class D>
HWY_INLINE hn::Vec<D> Errors(D d, const Dictionary::Block& block, std::size_t lane,
                             const Tone& target, float weight) {
    const auto y = hn::Sub(hn::Load(d, &block.y[lane]), hn::Set(d, target.y));
    const auto u = hn::Sub(hn::Load(d, &block.u[lane]), hn::Set(d, target.u));
    const auto v = hn::Sub(hn::Load(d, &block.v[lane]), hn::Set(d, target.v));
    return hn::Mul(hn::Set(d, weight),
                   hn::Add(hn::Add(hn::Mul(y, y), hn::Mul(u, u)), hn::Mul(v, v)));
}

class Searcher {
  public:
    Searcher(const SearchJob& job, Screen& screen, std::vector<std::uint8_t>& data)
        : job_(job),
          tuning_(job.tuning),
          goal_(*job.goal),
          screen_(screen),
          width_(static_cast<std::size_t>(goal_.width)),
          reach_(SearchReach(goal_.width)),
          ringSize_(width_ * static_cast<std::size_t>(reach_ + 2)),
          ring_(ringSize_),
          endsRow_(ringSize_),
          weights_(width_),
          keepIndex_(static_cast<unsigned>(job.palette->size())),
          data_(data) {
        for (std::size_t i = width_ - 1; i < ringSize_; i += width_) {
            endsRow_[i] = 1;
        }
    }

    bool Run() {
        StartData();
        writer_.emplace(data_);
        writer_->Put(dictionary_.ClearCode(), codeWidth_);
        const std::size_t total = goal_.Size();
        while (position_ < total) {
            const auto row = static_cast<int>(position_ / width_);
            if (row >= row_ && !EnterRow(row)) {
                return false;
            }
            Foresee();
            CodeString(FindString());
        }
        writer_->Put(dictionary_.EndCode(), codeWidth_);
        writer_->Finish();
        job_.rowsDone(goal_.height);
        return true;
    }

  private:
    void StartData() {
        std::vector<Tone> tones;
        tones.reserve(keepIndex_ + 1);
        for (const Rgba& color : *job_.palette) {
            tones.push_back(ToneOf(color));
        }
        colorY_.fill(-kFarTone);
        for (std::size_t i = 0; i < tones.size(); ++i) {
            colorY_[i] = tones[i].y;
            colorU_[i] = tones[i].u;
            colorV_[i] = tones[i].v;
        }
        colors_ = tones.size();
        tones.push_back({});
        const int bits = CodeBitsFor(tones.size());
        dictionary_.Configure(tones, static_cast<int>(keepIndex_), bits);
        data_.push_back(static_cast<std::uint8_t>(bits));
        ResetCodes();
        price_ = tuning_.lambda * 3;
        spent_ = price_ * 20;
        covered_ = 20;
    }

    void ResetCodes() {
        codeWidth_ = dictionary_.CodeBits() + 1;
        nextCode_ = dictionary_.EndCode() + 1;
        codesSinceFull_ = 0;
        previous_ = Dictionary::kNone;
    }

    /// Makes every row ready that a string starting in row `y` may reach.
    bool EnterRow(int y) {
        const int last = std::min(y + reach_, goal_.height - 1);
        if (!job_.waitForRows(last + 1)) {
            return false;
        }
        for (; filled_ <= last; ++filled_) {
            FillRow(filled_);
        }
        end_ = static_cast<std::size_t>(last + 1) * width_;
        row_ = y + 1;
        job_.rowsDone(y);
        return true;
    }

    void FillRow(int y) {
        MaskingRow(goal_, y, weights_.data());
        const std::size_t start = static_cast<std::size_t>(y) * width_;
        PixelRow row;
        row.goal = goal_.Row(y);
        row.shown = job_.blankScreen ? nullptr : screen_.shown.Row(y);
        row.drawn = screen_.drawnGoal.Row(y);
        row.weights = weights_.data();
        row.lasts = job_.lasts == nullptr ? nullptr : job_.lasts->data() + start;
        row.width = width_;
        row.exact = job_.exact;
        PreparePixels(row, tuning_, &ring_[RingIndex(start)]);
    }

    std::size_t RingIndex(std::size_t position) const { return position % ringSize_; }

    /// The code of the string that starts at `position_`.
    unsigned FindString() {
        best_ = -kNever;
        bestCode_ = Dictionary::kNone;
        visitsLeft_ = tuning_.visits;
        cap_ = job_.exact ? 0.001F : tuning_.errorCap * price_;
        hope_ = tuning_.optimism * price_;
        keptRun_ = TakeKeptRun();
        if (keptRun_) {
            return bestCode_;
        }
        VisitRoot();
        return bestCode_;
    }

    /// A run of pixels that may be kept for nothing needs no search.
    bool TakeKeptRun() {
        unsigned node = Dictionary::kRoot;
        std::size_t index = RingIndex(position_);
        std::size_t at = position_;
        for (; at < end_; ++at) {
            if (ring_[index].keepError > tuning_.freeKeep * price_) {
                return false;
            }
            const unsigned child = dictionary_.At(node).keepChild;
            if (child == Dictionary::kNone) {
                break;
            }
            node = child;
            index = Next(index);
        }
        bestCode_ = node;
        return true;
    }

    std::size_t Next(std::size_t index) const { return index + 1 == ringSize_ ? 0 : index + 1; }

    void VisitRoot() {
        const std::size_t index = RingIndex(position_);
        const Pixel& pixel = ring_[index];
        Candidates candidates;
        FindCandidates(pixel, candidates);
        for (std::size_t i = 0; i < candidates.Count(); ++i) {
            Take(candidates.Code(i), candidates.Error(i), position_, index, pixel.target, 0);
        }
    }

    /// The colours below the cap and not much worse than the best; when there are none, the
    /// nearest.
    void FindCandidates(const Pixel& pixel, Candidates& candidates) {
        const hn::CappedTag<float, kGroup> d;
        const std::size_t lanes = hn::Lanes(d);
        const auto y = hn::Set(d, pixel.target.y);
        const auto u = hn::Set(d, pixel.target.u);
        const auto v = hn::Set(d, pixel.target.v);
        const auto weight = hn::Set(d, pixel.weight);
        alignas(64) std::array<float, kMaxColors> errors;
        auto least = hn::Set(d, 2 * kNever);
        for (std::size_t i = 0; i < colors_; i += lanes) {
            const auto dy = hn::Sub(hn::Load(d, &colorY_[i]), y);
            const auto du = hn::Sub(hn::Load(d, &colorU_[i]), u);
            const auto dv = hn::Sub(hn::Load(d, &colorV_[i]), v);
            const auto error = hn::Mul(
                weight, hn::Add(hn::Add(hn::Mul(dy, dy), hn::Mul(du, du)), hn::Mul(dv, dv)));
            least = hn::Min(least, error);
            hn::Store(error, d, &errors[i]);
        }
        const float nearest = hn::GetLane(hn::MinOfLanes(d, least));
        const float best = std::min(nearest, pixel.keepError);
        const float limit = std::max(best, std::min(cap_, best + tuning_.candidateRange * price_));
        for (std::size_t i = 0; i < colors_; i += lanes) {
            std::uint64_t bits = 0;
            const auto useful = hn::Set(d, std::min(limit, candidates.Worst()));
            hn::StoreMaskBits(d, hn::Le(hn::Load(d, &errors[i]), useful),
                              reinterpret_cast<std::uint8_t*>(&bits));
            for (; bits != 0; bits &= bits - 1) {
                const std::size_t color = i + hwy::Num0BitsBelowLS1Bit_Nonzero64(bits);
                candidates.Offer(errors[color], static_cast<unsigned>(color));
            }
        }
        if (pixel.keepError <= limit) {
            candidates.Offer(pixel.keepError, keepIndex_);
        }
        candidates.Sort();
    }

    /// What the pixel would cost if the string ended before it: little when it may be kept.
    float PriceOf(const Pixel& pixel) const {
        return std::min(price_, tuning_.keptPrice * price_ + pixel.keepError);
    }

    /// Goes on to `code`, whose last pixel is the one at `position` and costs `error`.
    void Take(unsigned code, float error, std::size_t position, std::size_t index,
              const Tone& wanted, float score) {
        const float reached = score + PriceOf(ring_[index]) - error;
        if (reached > best_) {
            best_ = reached;
            bestCode_ = code;
        }
        const Dictionary::Node& node = dictionary_.At(code);
        if (node.height == 0 || position + 1 == end_ ||
            reached + hope_ * static_cast<float>(node.height) <= best_) {
            return;
        }
        const std::size_t next = Next(index);
        Tone target = ring_[next].target;
        if (endsRow_[index] == 0 && wanted.y < kFarTone) {
            const Tone& color =
                node.color == keepIndex_ ? ring_[index].shown : dictionary_.PaletteTone(node.color);
            const Tone passed = PassedOn(Minus(wanted, color));
            target.y += 7 * passed.y;
            target.u += 7 * passed.u;
            target.v += 7 * passed.v;
        }
        Visit(node, position + 1, next, target, reached);
    }

    void Visit(const Dictionary::Node& node, std::size_t position, std::size_t index,
               const Tone& target, float score) {
        if (--visitsLeft_ < 0) {
            return;
        }
        const Pixel& pixel = ring_[index];
        if (node.keepChild != Dictionary::kNone && pixel.keepError <= cap_) {
            Take(node.keepChild, pixel.keepError, position, index, target, score);
        }
        const hn::CappedTag<float, Dictionary::kBlockLanes> d;
        for (unsigned block = node.firstBlock; block != Dictionary::kNone;
             block = dictionary_.BlockAt(block).next) {
            const Dictionary::Block& children = dictionary_.BlockAt(block);
            // An error beyond this can no longer lead to the best string.
            const float limit = std::min(
                cap_, score + PriceOf(pixel) - best_ + hope_ * static_cast<float>(node.height - 1));
            for (std::size_t lane = 0; lane < Dictionary::kBlockLanes; lane += hn::Lanes(d)) {
                const auto errors = Errors(d, children, lane, target, pixel.weight);
                std::uint64_t bits = 0;
                hn::StoreMaskBits(d, hn::Lt(errors, hn::Set(d, limit)),
                                  reinterpret_cast<std::uint8_t*>(&bits));
                if (bits == 0) {
                    continue;
                }
                alignas(64) std::array<float, Dictionary::kBlockLanes> values;
                hn::Store(errors, d, values.data());
                for (; bits != 0; bits &= bits - 1) {
                    const std::size_t i = hwy::Num0BitsBelowLS1Bit_Nonzero64(bits);
                    Take(children.code[lane + i], values[i], position, index, target, score);
                }
            }
        }
    }

    /// A sixteenth of what a pixel's neighbours are to make up for.
    HWY_INLINE Tone PassedOn(const Tone& rest) const {
        constexpr float kShows = 25;
        const float strength =
            std::min((rest.y * rest.y + rest.u * rest.u + rest.v * rest.v) / kShows, 1.0F);
        const float part =
            (tuning_.diffusion + strength * (tuning_.bandDiffusion - tuning_.diffusion)) / 16;
        return {part * Limited(rest.y), part * Limited(rest.u), part * Limited(rest.v)};
    }

    void CodeString(unsigned code) {
        const Dictionary::Node& node = dictionary_.At(code);
        string_.resize(node.length);
        for (unsigned up = code, i = node.length; i > 0; --i, up = dictionary_.At(up).parent) {
            string_[i - 1] = dictionary_.At(up).color;
        }
        const float bits = tuning_.lambda * static_cast<float>(codeWidth_);
        const float error = DrawString();
        if (!keptRun_) {
            // Runs kept for nothing say nothing of what a pixel costs where there is work to do.
            spent_ = spent_ * tuning_.memory + error + bits;
            covered_ = covered_ * tuning_.memory + worth_;
            price_ = spent_ / covered_;
        }
        PutCode(code);
    }

    void PutCode(unsigned code) {
        writer_->Put(code, codeWidth_);
        if (previous_ != Dictionary::kNone && nextCode_ < Dictionary::kMaxCodes) {
            Learn(string_.front());
            ++nextCode_;
            if (nextCode_ == 1U << static_cast<unsigned>(codeWidth_) && codeWidth_ < 12) {
                ++codeWidth_;
            }
        }
        previous_ = code;
        if (nextCode_ == Dictionary::kMaxCodes && ++codesSinceFull_ > tuning_.codesAfterFull) {
            writer_->Put(dictionary_.ClearCode(), codeWidth_);
            dictionary_.Clear();
            ResetCodes();
        }
    }

    /// The string that the reader is about to learn is the one before plus the first pixel of the
    /// next. If that is the same pixel as its own first, the next code may already be the new one.
    void Foresee() {
        foreseen_ = false;
        if (previous_ == Dictionary::kNone || nextCode_ >= Dictionary::kMaxCodes) {
            return;
        }
        const unsigned first = string_.front();
        if (dictionary_.Find(previous_, first) == Dictionary::kNone) {
            dictionary_.Add(previous_, first, nextCode_);
            foreseen_ = true;
        }
    }

    void Learn(unsigned first) {
        if (foreseen_) {
            if (dictionary_.At(nextCode_).color == first) {
                return;
            }
            dictionary_.RemoveNewest(previous_, nextCode_);
        }
        if (dictionary_.Find(previous_, first) == Dictionary::kNone) {
            dictionary_.Add(previous_, first, nextCode_);
        }
    }

    /// Puts the pixels of `string_` on the screen and spreads their errors. Returns the error.
    float DrawString() {
        float total = 0;
        float worth = 0;
        std::size_t index = RingIndex(position_);
        for (const std::uint8_t color : string_) {
            worth += PriceOf(ring_[index]);
            total += DrawPixel(color, index);
            ++position_;
            index = Next(index);
        }
        worth_ = worth / price_;
        return total;
    }

    float DrawPixel(unsigned color, std::size_t index) {
        Pixel& pixel = ring_[index];
        const bool kept = color == keepIndex_;
        if (pixel.target.y >= kFarTone * 0.5F) {
            screen_.shown.pixels[position_] = {};
            return 0;
        }
        const Tone& tone = kept ? pixel.shown : dictionary_.PaletteTone(color);
        const Tone rest = Minus(pixel.target, tone);
        const float error =
            kept ? pixel.keepError
                 : pixel.weight * (rest.y * rest.y + rest.u * rest.u + rest.v * rest.v);
        if (!kept) {
            screen_.shown.pixels[position_] = (*job_.palette)[color];
            screen_.drawnGoal.pixels[position_] = goal_.pixels[position_];
        }
        if (!job_.exact) {
            Spread(rest, index);
        }
        return error;
    }

    void Spread(const Tone& rest, std::size_t index) {
        const Tone passed = PassedOn(rest);
        const auto give = [&](std::size_t to, float share) {
            Tone& target = ring_[to < ringSize_ ? to : to - ringSize_].target;
            target.y += share * passed.y;
            target.u += share * passed.u;
            target.v += share * passed.v;
        };
        const bool endsRow = endsRow_[index] != 0;
        if (!endsRow) {
            give(index + 1, 7);
        }
        if (position_ + width_ >= goal_.Size()) {
            return;
        }
        if (!StartsRow(index)) {
            give(index + width_ - 1, 3);
        }
        give(index + width_, 5);
        if (!endsRow) {
            give(index + width_ + 1, 1);
        }
    }

    bool StartsRow(std::size_t index) const {
        return endsRow_[index == 0 ? ringSize_ - 1 : index - 1] != 0;
    }

    const SearchJob& job_;
    const SearchTuning& tuning_;
    const Picture& goal_;
    Screen& screen_;
    std::size_t width_;
    int reach_;
    std::size_t ringSize_;
    std::vector<Pixel> ring_;
    std::vector<std::uint8_t> endsRow_;  ///< of the ring's pixels
    std::vector<float> weights_;
    unsigned keepIndex_;
    std::vector<std::uint8_t>& data_;
    std::optional<CodeWriter> writer_;

    alignas(64) std::array<float, kMaxColors> colorY_{};
    alignas(64) std::array<float, kMaxColors> colorU_{};
    alignas(64) std::array<float, kMaxColors> colorV_{};
    std::size_t colors_ = 0;
    Dictionary dictionary_;
    std::vector<std::uint8_t> string_;
    std::size_t position_ = 0;
    std::size_t end_ = 0;
    int row_ = 0;
    int filled_ = 0;
    int codeWidth_ = 9;
    unsigned nextCode_ = 0;
    unsigned previous_ = Dictionary::kNone;
    int codesSinceFull_ = 0;
    bool foreseen_ = false;
    bool keptRun_ = false;

    float price_ = 0;
    float spent_ = 0;
    float covered_ = 1;
    float worth_ = 0;  ///< of the string, in pixels that are not kept
    float cap_ = 0;
    float hope_ = 0;
    float best_ = 0;
    unsigned bestCode_ = 0;
    int visitsLeft_ = 0;
};

bool RunSearch(const SearchJob& job, Screen& screen, std::vector<std::uint8_t>& data) {
    return Searcher(job, screen, data).Run();
}

}  // namespace lumirra::gif::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace lumirra::gif {

HWY_EXPORT(RunSearch);

int SearchReach(int width) {
    constexpr int kRows = 4;
    constexpr int kPixels = 1024;
    return std::max(kRows, kPixels / std::max(width, 1));
}

int CodeBitsFor(std::size_t entries) {
    int bits = 2;
    while ((std::size_t{1} << static_cast<unsigned>(bits)) < entries) {
        ++bits;
    }
    return bits;
}

bool SearchStrings(const SearchJob& job, Screen& screen, std::vector<std::uint8_t>& data) {
    return HWY_DYNAMIC_DISPATCH(RunSearch)(job, screen, data);
}

}  // namespace lumirra::gif
#endif
