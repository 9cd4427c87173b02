#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "output/AnimationRequest.h"

namespace lumirra {

/// A size limit is best met by a smaller picture when it would take the quality below this.
inline constexpr double kLeastGoodQuality = 50;

/// What a limit comes to at one width, by estimates.
struct LimitedSize {
    int width = 0;
    int height = 0;
    double quality = 0;
    long long bytes = 0;
};

struct LimitAdvice {
    long long limit = 0;
    LimitedSize asIs;                    ///< above the limit when no quality fits
    std::optional<LimitedSize> smaller;  ///< a width that leaves a good quality, if there is one
};

/// Looks for a smaller width when the request's size limit would need a quality below
/// `kLeastGoodQuality`. Nothing when it would not. `estimate` is asked about ten times, with other
/// qualities and widths; the first of its failures is the outcome.
Outcome<std::optional<LimitAdvice>> AdviseOnLimit(
    const AnimationRequest& request,
    const std::function<Outcome<AnimationEstimate>(const AnimationRequest&)>& estimate);

/// The figures of both in one or two sentences.
QString LimitAdviceText(const LimitAdvice& advice);

}  // namespace lumirra
