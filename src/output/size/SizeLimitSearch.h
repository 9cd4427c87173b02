#pragma once

#include <functional>
#include <optional>

namespace lumirra {

/// A quality and the bytes it gives.
struct SizedQuality {
    double quality = 0;
    double bytes = 0;
};

/// What a search may ask; nothing ends it.
struct SizeProbes {
    /// Cheap, and off by much the same factor at near qualities.
    std::function<std::optional<double>(double quality)> estimate;
    /// The truth, at the price of a whole encoding.
    std::function<std::optional<double>(double quality)> encode;
};

struct SizeSearchResult {
    bool fits = false;
    SizedQuality best;  ///< encoded; without a fit that of the lowest quality
};

/// The highest quality up to `highest` whose bytes fit `limit`, or close: when the limit binds, the
/// bytes end up to 4 % below it. One estimate and one encoding when the limit does not bind; else
/// up to five estimates and mostly one or two, at most three encodings. Only if none of these fits
/// there are more.
std::optional<SizeSearchResult> SearchQuality(double highest, double limit,
                                              const SizeProbes& probes);

}  // namespace lumirra
