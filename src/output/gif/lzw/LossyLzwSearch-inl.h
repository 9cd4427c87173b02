// The search itself, for every set of kernels; included once for each machine level.
#if defined(LUMIRRA_OUTPUT_GIF_LZW_SEARCH) == defined(HWY_TARGET_TOGGLE)
#ifdef LUMIRRA_OUTPUT_GIF_LZW_SEARCH
#undef LUMIRRA_OUTPUT_GIF_LZW_SEARCH
#else
#define LUMIRRA_OUTPUT_GIF_LZW_SEARCH
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <bit>
#include <optional>

#include "output/gif/Masking.h"
#include "output/gif/Yuv.h"
#include "output/gif/lzw/ColorPlanes.h"
#include "output/gif/lzw/LossyLzwSearch.h"
#include "output/gif/lzw/LzwCodeWriter.h"
#include "output/gif/lzw/LzwDictionary.h"
#include "output/gif/lzw/PixelRow.h"

HWY_BEFORE_NAMESPACE();
namespace lumirra::gif::HWY_NAMESPACE {

constexpr float kNever = kNeverDrawn;
constexpr float kLargestPassedOn = 48;
using Pixel = SearchPixel;

inline Yuv Minus(const Yuv& a, const Yuv& b) {
    return {a.y - b.y, a.u - b.u, a.v - b.v};
}

inline float Limited(float value) {
    return std::clamp(value, -kLargestPassedOn, kLargestPassedOn);
}

/// `Kernels` has the loops over palette and children:
///   Candidates: as in Candidates-inl.h
///   Errors(colors, pixel, errors): fills in each colour's error at the pixel; gives the least
///   Collect(errors, count, limit, candidates): offers every colour of error `limit` or less
///   ErrorsBelow(block, target, weight, limit, errors): the children's errors, and a bit for each
///       below the limit
///   PreparePixels
template <class Kernels>
class Searcher {
  public:
    Searcher(const SearchJob& job, Screen& screen, std::vector<std::uint8_t>& data)
        : job_(job),
          tuning_(job.tuning),
          target_(*job.target),
          screen_(screen),
          width_(static_cast<std::size_t>(target_.width)),
          reach_(SearchReach(target_.width)),
          ringSize_(width_ * static_cast<std::size_t>(reach_ + 2)),
          ring_(ringSize_),
          endsRow_(ringSize_),
          weights_(width_),
          transparentIndex_(static_cast<unsigned>(job.palette->size())),
          data_(data) {
        for (std::size_t i = width_ - 1; i < ringSize_; i += width_) {
            endsRow_[i] = 1;
        }
    }

    bool Run() {
        StartData();
        writer_.emplace(data_);
        writer_->Put(dictionary_.ClearCode(), codeWidth_);
        const std::size_t total = target_.Size();
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
        job_.rowsDone(target_.height);
        return true;
    }

  private:
    void StartData() {
        std::vector<Yuv> yuvs;
        yuvs.reserve(transparentIndex_ + 1);
        for (const Rgba& color : *job_.palette) {
            yuvs.push_back(YuvOf(color));
        }
        colors_.y.fill(-kFarYuv);
        for (std::size_t i = 0; i < yuvs.size(); ++i) {
            colors_.y[i] = yuvs[i].y;
            colors_.u[i] = yuvs[i].u;
            colors_.v[i] = yuvs[i].v;
        }
        colors_.count = yuvs.size();
        yuvs.push_back({});
        const int bits = CodeBitsFor(yuvs.size());
        dictionary_.Configure(yuvs, static_cast<int>(transparentIndex_), bits);
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
        previous_ = LzwDictionary::kNone;
    }

    /// Makes every row ready that a string starting in row `y` may reach.
    bool EnterRow(int y) {
        const int last = std::min(y + reach_, target_.height - 1);
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
        MaskingRow(target_, y, weights_.data());
        const std::size_t start = static_cast<std::size_t>(y) * width_;
        PixelRow row;
        row.target = target_.Row(y);
        row.shown = job_.blankScreen ? nullptr : screen_.shown.Row(y);
        row.drawn = screen_.drawnTarget.Row(y);
        row.weights = weights_.data();
        row.lifetimes = job_.lifetimes == nullptr ? nullptr : job_.lifetimes->data() + start;
        row.width = width_;
        row.exact = job_.exact;
        Kernels::PreparePixels(row, tuning_, &ring_[RingIndex(start)]);
    }

    std::size_t RingIndex(std::size_t position) const { return position % ringSize_; }

    /// The code of the string that starts at `position_`.
    unsigned FindString() {
        best_ = -kNever;
        bestCode_ = LzwDictionary::kNone;
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
        unsigned node = LzwDictionary::kRoot;
        std::size_t index = RingIndex(position_);
        std::size_t at = position_;
        for (; at < end_; ++at) {
            if (ring_[index].keepError > tuning_.freeKeep * price_) {
                return false;
            }
            const unsigned child = dictionary_.At(node).transparentChild;
            if (child == LzwDictionary::kNone) {
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
        typename Kernels::Candidates candidates;
        FindCandidates(pixel, candidates);
        for (std::size_t i = 0; i < candidates.Count(); ++i) {
            Take(candidates.Code(i), candidates.Error(i), position_, index, pixel.target, 0);
        }
    }

    /// The colours below the cap and not much worse than the best; when there are none, the
    /// nearest.
    void FindCandidates(const Pixel& pixel, typename Kernels::Candidates& candidates) {
        const float nearest = Kernels::Errors(colors_, pixel, errors_.data());
        const float best = std::min(nearest, pixel.keepError);
        const float limit = std::max(best, std::min(cap_, best + tuning_.candidateRange * price_));
        Kernels::Collect(errors_.data(), colors_.count, limit, candidates);
        if (pixel.keepError <= limit) {
            candidates.Offer(pixel.keepError, transparentIndex_);
        }
        candidates.Sort();
    }

    /// What the pixel would cost if the string ended before it: little when it may be kept.
    float PriceOf(const Pixel& pixel) const {
        return std::min(price_, tuning_.keptPrice * price_ + pixel.keepError);
    }

    /// Goes on to `code`, whose last pixel is the one at `position` and costs `error`.
    void Take(unsigned code, float error, std::size_t position, std::size_t index,
              const Yuv& wanted, float score) {
        const float reached = score + PriceOf(ring_[index]) - error;
        if (reached > best_) {
            best_ = reached;
            bestCode_ = code;
        }
        const LzwDictionary::Node& node = dictionary_.At(code);
        if (node.height == 0 || position + 1 == end_ ||
            reached + hope_ * static_cast<float>(node.height) <= best_) {
            return;
        }
        const std::size_t next = Next(index);
        Yuv target = ring_[next].target;
        if (endsRow_[index] == 0 && wanted.y < kFarYuv) {
            const Yuv& color = node.color == transparentIndex_ ? ring_[index].shown
                                                               : dictionary_.PaletteYuv(node.color);
            const Yuv passed = PassedOn(Minus(wanted, color));
            target.y += 7 * passed.y;
            target.u += 7 * passed.u;
            target.v += 7 * passed.v;
        }
        Visit(node, position + 1, next, target, reached);
    }

    void Visit(const LzwDictionary::Node& node, std::size_t position, std::size_t index,
               const Yuv& target, float score) {
        if (--visitsLeft_ < 0) {
            return;
        }
        const Pixel& pixel = ring_[index];
        if (node.transparentChild != LzwDictionary::kNone && pixel.keepError <= cap_) {
            Take(node.transparentChild, pixel.keepError, position, index, target, score);
        }
        for (unsigned block = node.firstBlock; block != LzwDictionary::kNone;
             block = dictionary_.BlockAt(block).next) {
            const LzwDictionary::Block& children = dictionary_.BlockAt(block);
            // An error beyond this can no longer lead to the best string.
            const float limit = std::min(
                cap_, score + PriceOf(pixel) - best_ + hope_ * static_cast<float>(node.height - 1));
            alignas(64) std::array<float, LzwDictionary::kBlockLanes> errors;
            for (unsigned bits =
                     Kernels::ErrorsBelow(children, target, pixel.weight, limit, errors);
                 bits != 0; bits &= bits - 1) {
                const auto i = static_cast<std::size_t>(std::countr_zero(bits));
                Take(children.code[i], errors[i], position, index, target, score);
            }
        }
    }

    /// A sixteenth of what a pixel's neighbours are to make up for.
    Yuv PassedOn(const Yuv& rest) const {
        constexpr float kShows = 25;
        const float strength =
            std::min((rest.y * rest.y + rest.u * rest.u + rest.v * rest.v) / kShows, 1.0F);
        const float part =
            (tuning_.diffusion + strength * (tuning_.bandDiffusion - tuning_.diffusion)) / 16;
        return {part * Limited(rest.y), part * Limited(rest.u), part * Limited(rest.v)};
    }

    void CodeString(unsigned code) {
        const LzwDictionary::Node& node = dictionary_.At(code);
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
        if (previous_ != LzwDictionary::kNone && nextCode_ < LzwDictionary::kMaxCodes) {
            Learn(string_.front());
            ++nextCode_;
            if (nextCode_ == 1U << static_cast<unsigned>(codeWidth_) && codeWidth_ < 12) {
                ++codeWidth_;
            }
        }
        previous_ = code;
        if (nextCode_ == LzwDictionary::kMaxCodes && ++codesSinceFull_ > tuning_.codesAfterFull) {
            writer_->Put(dictionary_.ClearCode(), codeWidth_);
            dictionary_.Clear();
            ResetCodes();
        }
    }

    /// The string that the reader is about to learn is the one before plus the first pixel of the
    /// next. If that is the same pixel as its own first, the next code may already be the new one.
    void Foresee() {
        foreseen_ = false;
        if (previous_ == LzwDictionary::kNone || nextCode_ >= LzwDictionary::kMaxCodes) {
            return;
        }
        const unsigned first = string_.front();
        if (dictionary_.Find(previous_, first) == LzwDictionary::kNone) {
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
        if (dictionary_.Find(previous_, first) == LzwDictionary::kNone) {
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
        const bool kept = color == transparentIndex_;
        if (pixel.target.y >= kFarYuv * 0.5F) {
            screen_.shown.pixels[position_] = {};
            return 0;
        }
        const Yuv& yuv = kept ? pixel.shown : dictionary_.PaletteYuv(color);
        const Yuv rest = Minus(pixel.target, yuv);
        const float error =
            kept ? pixel.keepError
                 : pixel.weight * (rest.y * rest.y + rest.u * rest.u + rest.v * rest.v);
        if (!kept) {
            screen_.shown.pixels[position_] = (*job_.palette)[color];
            screen_.drawnTarget.pixels[position_] = target_.pixels[position_];
        }
        if (!job_.exact) {
            Spread(rest, index);
        }
        return error;
    }

    void Spread(const Yuv& rest, std::size_t index) {
        const Yuv passed = PassedOn(rest);
        const auto give = [&](std::size_t to, float share) {
            Yuv& target = ring_[to < ringSize_ ? to : to - ringSize_].target;
            target.y += share * passed.y;
            target.u += share * passed.u;
            target.v += share * passed.v;
        };
        const bool endsRow = endsRow_[index] != 0;
        if (!endsRow) {
            give(index + 1, 7);
        }
        if (position_ + width_ >= target_.Size()) {
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
    const Canvas& target_;
    Screen& screen_;
    std::size_t width_;
    int reach_;
    std::size_t ringSize_;
    std::vector<Pixel> ring_;
    std::vector<std::uint8_t> endsRow_;  ///< of the ring's pixels
    std::vector<float> weights_;
    unsigned transparentIndex_;
    std::vector<std::uint8_t>& data_;
    std::optional<LzwCodeWriter> writer_;

    ColorPlanes colors_;
    alignas(64) std::array<float, kMaxColors> errors_{};
    LzwDictionary dictionary_;
    std::vector<std::uint8_t> string_;
    std::size_t position_ = 0;
    std::size_t end_ = 0;
    int row_ = 0;
    int filled_ = 0;
    int codeWidth_ = 9;
    unsigned nextCode_ = 0;
    unsigned previous_ = LzwDictionary::kNone;
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

}  // namespace lumirra::gif::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
