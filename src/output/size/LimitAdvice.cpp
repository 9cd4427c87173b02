#include "output/size/LimitAdvice.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "imaging/Words.h"
#include "output/SizeText.h"
#include "output/size/SizeLimitSearch.h"

namespace lumirra {

namespace {

/// What a smaller width is to leave, unless less is asked for.
constexpr double kOfferedQuality = 75;
/// A smaller picture holds more detail in each pixel: bytes fall less than its area.
constexpr double kBytesOverWidth = 1.5;
/// Shares of the limit that a smaller width may come to; what is aimed at lies between them.
constexpr double kMost = 0.97;
constexpr double kAim = 0.92;
constexpr double kEnough = 0.8;
constexpr int kMostWidths = 4;
constexpr int kLeastWidth = 16;

/// One that people would type.
int RoundWidth(double width) {
    const int step = width >= 200 ? 10 : width >= 64 ? 4 : 2;
    return static_cast<int>(width) / step * step;
}

class Advisor {
  public:
    using Estimate = std::function<Outcome<AnimationEstimate>(const AnimationRequest&)>;

    Advisor(const AnimationRequest& request, const Estimate& estimate)
        : request_(request), estimate_(estimate) {}

    Outcome<std::optional<LimitAdvice>> Go() {
        const double good = std::min(request_.quality, kLeastGoodQuality);
        const auto atGood = At(request_.maxWidth, good);
        if (!atGood) {
            return *problem_;
        }
        if (atGood->bytes <= request_.maxBytes) {
            return std::optional<LimitAdvice>();
        }
        LimitAdvice advice{.limit = request_.maxBytes, .asIs = {}, .smaller = {}};
        if (!FindQuality(good, advice.asIs) || !FindWidth(*atGood, advice.smaller)) {
            return *problem_;
        }
        return std::optional(advice);
    }

  private:
    /// Nothing, and the problem noted, when the estimate fails.
    std::optional<LimitedSize> At(int width, double quality) {
        const auto known = known_.find({width, quality});
        if (known != known_.end()) {
            return known->second;
        }
        AnimationRequest request = request_;
        request.maxWidth = width;
        request.quality = quality;
        const auto estimate = estimate_(request);
        if (!estimate) {
            problem_ = estimate.failure();
            return std::nullopt;
        }
        const LimitedSize size{estimate->width, estimate->height, quality, estimate->bytes};
        known_.emplace(std::pair(width, quality), size);
        return size;
    }

    bool FindQuality(double highest, LimitedSize& found) {
        const auto bytes = [this](double quality) -> std::optional<double> {
            const auto size = At(request_.maxWidth, quality);
            return size ? std::optional(static_cast<double>(size->bytes)) : std::nullopt;
        };
        const auto result =
            SearchQuality(highest, static_cast<double>(request_.maxBytes), {bytes, bytes});
        const auto size =
            result ? At(request_.maxWidth, result->best.quality) : std::optional<LimitedSize>();
        if (size) {
            found = *size;
        }
        return size.has_value();
    }

    /// The largest of a few widths that leaves the offered quality.
    bool FindWidth(const LimitedSize& whole, std::optional<LimitedSize>& found) {
        const double quality = std::min(request_.quality, kOfferedQuality);
        const auto limit = static_cast<double>(request_.maxBytes);
        const auto wholeBytes = At(request_.maxWidth, quality);
        if (!wholeBytes) {
            return false;
        }
        LimitedSize last = *wholeBytes;
        int misfit = whole.width;
        for (int tries = 0; tries < kMostWidths; ++tries) {
            const double share = kAim * limit / static_cast<double>(std::max(last.bytes, 1LL));
            const int width =
                std::min(RoundWidth(last.width * std::pow(share, 1 / kBytesOverWidth)), misfit - 1);
            if (width < kLeastWidth || (found && width <= found->width)) {
                break;
            }
            const auto size = At(width, quality);
            if (!size) {
                return false;
            }
            last = *size;
            if (static_cast<double>(last.bytes) > kMost * limit) {
                misfit = width;
                continue;
            }
            found = last;
            if (static_cast<double>(last.bytes) >= kEnough * limit) {
                break;
            }
        }
        return true;
    }

    const AnimationRequest& request_;
    const Estimate& estimate_;
    std::map<std::pair<int, double>, LimitedSize> known_;
    std::optional<Failure> problem_;
};

QString FiguresText(const LimitedSize& size) {
    return Filled(QStringLiteral("at %1 × %2 pixels a quality of about %3 (%4)"), size.width,
                  size.height, std::llround(size.quality), SizeText(size.bytes));
}

}  // namespace

Outcome<std::optional<LimitAdvice>> AdviseOnLimit(
    const AnimationRequest& request,
    const std::function<Outcome<AnimationEstimate>(const AnimationRequest&)>& estimate) {
    if (request.maxBytes <= 0) {
        return std::optional<LimitAdvice>();
    }
    return Advisor(request, estimate).Go();
}

QString LimitAdviceText(const LimitAdvice& advice) {
    const bool fits = advice.asIs.bytes <= advice.limit;
    const QString limit = SizeText(advice.limit);
    const QString smaller =
        advice.smaller ? FiguresText(*advice.smaller) : QStringLiteral("no smaller width helps");
    if (fits) {
        return Filled(QStringLiteral("The limit of %1 allows %2; %3."), limit,
                      FiguresText(advice.asIs), smaller);
    }
    return Filled(QStringLiteral("The limit of %1 is too small for %2 × %3 pixels, even at the "
                                 "lowest quality (%4); %5."),
                  limit, advice.asIs.width, advice.asIs.height, SizeText(advice.asIs.bytes),
                  advice.smaller ? QStringLiteral("it allows ") + smaller : smaller);
}

}  // namespace lumirra
