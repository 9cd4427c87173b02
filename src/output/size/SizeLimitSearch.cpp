#include "output/size/SizeLimitSearch.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumirra {

namespace {

constexpr double kLowest = 1;
/// Shares of the limit: what is aimed at, at the last chance too, and from where a file is large
/// enough.
constexpr double kAim = 0.98;
constexpr double kSafeAim = 0.97;
constexpr double kEnough = 0.96;
/// An estimate above this share of the limit makes an encoding pointless.
constexpr double kHopeless = 1.2;
/// A step as small as this is not worth an estimate.
constexpr double kNearEnough = 1;
constexpr int kMostFirstEstimates = 4;
constexpr int kMostEstimates = 5;
constexpr int kMostEncodings = 3;  ///< while something fits
/// Growth of the logarithm of the bytes with quality, where nothing else is known, and its limits.
constexpr double kUsualSlope = 0.022;
constexpr double kLeastSlope = 0.001;
constexpr double kMostSlope = 0.2;

/// Logarithm of the bytes over quality: estimates, and encodings that set them right.
class Curve {
  public:
    void AddEstimate(double quality, double bytes) {
        Insert({quality, std::log(bytes) + shift_, false});
    }

    /// All estimates are taken to be off by the same factor.
    void AddTruth(double quality, double bytes) {
        const double size = std::log(bytes);
        if (!points_.empty()) {
            const double off = size - SizeAt(quality);
            shift_ += off;
            for (Point& point : points_) {
                point.size += point.exact ? 0 : off;
            }
        }
        std::erase_if(points_, [&](const Point& point) {
            return !point.exact && std::abs(point.quality - quality) < 0.5;
        });
        Insert({quality, size, true});
    }

    double QualityFor(double bytes) const {
        const double wanted = std::log(bytes);
        const auto above = std::find_if(points_.begin(), points_.end(),
                                        [&](const Point& point) { return point.size > wanted; });
        const Line line = LineBefore(above);
        return line.from.quality + (wanted - line.from.size) / line.slope;
    }

  private:
    struct Point {
        double quality;
        double size;
        bool exact;
    };
    using Points = std::vector<Point>;
    struct Line {
        Point from;
        double slope;
    };

    void Insert(Point point) {
        points_.insert(std::find_if(points_.begin(), points_.end(),
                                    [&](const Point& p) { return p.quality > point.quality; }),
                       point);
    }

    /// Between that point and the one before it, or through the outermost two.
    Line LineBefore(Points::const_iterator above) const {
        if (points_.size() == 1) {
            return {points_.front(), kUsualSlope};
        }
        const auto at = std::clamp(above, points_.begin() + 1, points_.end() - 1);
        const Point& low = *(at - 1);
        const Point& high = *at;
        const double slope = (high.size - low.size) / std::max(high.quality - low.quality, 1e-9);
        return {above == points_.begin() ? low
                : above == points_.end() ? high
                                         : low,
                std::clamp(slope, kLeastSlope, kMostSlope)};
    }

    double SizeAt(double quality) const {
        const auto above = std::find_if(points_.begin(), points_.end(),
                                        [&](const Point& p) { return p.quality > quality; });
        const Line line = LineBefore(above);
        return line.from.size + (quality - line.from.quality) * line.slope;
    }

    Points points_;  ///< in order of quality
    double shift_ = 0;
};

class Search {
  public:
    Search(double highest, double limit, const SizeProbes& probes)
        : highest_(highest), limit_(limit), probes_(probes) {}

    std::optional<SizeSearchResult> Go() {
        const std::optional<double> first = Estimate(highest_);
        if (!first || (*first <= kHopeless * limit_ && !Encode(highest_))) {
            return std::nullopt;
        }
        while (!Settled()) {
            const std::optional<double> quality = EstimatedQuality();
            if (!quality || !Encode(*quality)) {
                return std::nullopt;
            }
        }
        return fit_ ? SizeSearchResult{true, *fit_} : SizeSearchResult{false, *miss_};
    }

  private:
    std::optional<double> Estimate(double quality) {
        const std::optional<double> bytes = probes_.estimate(quality);
        ++estimates_;
        if (bytes) {
            curve_.AddEstimate(quality, std::max(*bytes, 1.0));
        }
        return bytes;
    }

    /// Where estimates say that the aim is: a few to come near it, later one for each step.
    std::optional<double> EstimatedQuality() {
        const int most =
            encodings_ == 0 ? kMostFirstEstimates : std::min(estimates_ + 1, kMostEstimates);
        double quality = NextQuality();
        while (estimates_ < most) {
            const std::optional<double> bytes = Estimate(quality);
            if (!bytes) {
                return std::nullopt;
            }
            const double next = NextQuality();
            if (std::abs(next - quality) < kNearEnough) {
                return next;
            }
            quality = next;
        }
        return quality;
    }

    bool Encode(double quality) {
        const std::optional<double> bytes = probes_.encode(quality);
        ++encodings_;
        if (!bytes) {
            return false;
        }
        const SizedQuality made{quality, std::max(*bytes, 1.0)};
        curve_.AddTruth(made.quality, made.bytes);
        if (made.bytes <= limit_) {
            fit_ = !fit_ || made.quality > fit_->quality ? made : fit_;
        } else {
            miss_ = !miss_ || made.quality < miss_->quality ? made : miss_;
        }
        return true;
    }

    bool Settled() const {
        if (fit_) {
            const bool between = miss_ && miss_->quality - fit_->quality < 0.05;
            return fit_->bytes >= kEnough * limit_ || fit_->quality >= highest_ || between ||
                   encodings_ >= kMostEncodings;
        }
        return miss_ && miss_->quality <= kLowest;
    }

    /// Within what is known: above what fits, below what does not.
    double NextQuality() const {
        const bool lastChance = !fit_ && encodings_ + 1 >= kMostEncodings;
        double quality = curve_.QualityFor(limit_ * (lastChance ? kSafeAim : kAim));
        if (encodings_ >= kMostEncodings) {
            quality = encodings_ > kMostEncodings
                          ? kLowest
                          : std::min(quality, (miss_->quality + kLowest) / 2);
        }
        const double least = fit_ ? fit_->quality : kLowest;
        const double most = miss_ ? miss_->quality : highest_;
        const double margin = fit_ && miss_ ? 0.1 * (most - least) : 0;
        return std::clamp(quality, least + margin, std::max(most - margin, least + margin));
    }

    double highest_;
    double limit_;
    const SizeProbes& probes_;
    Curve curve_;
    int estimates_ = 0;
    int encodings_ = 0;
    std::optional<SizedQuality> fit_;   ///< of the highest quality
    std::optional<SizedQuality> miss_;  ///< of the lowest quality
};

}  // namespace

std::optional<SizeSearchResult> SearchQuality(double highest, double limit,
                                              const SizeProbes& probes) {
    return Search(highest, limit, probes).Go();
}

}  // namespace lumirra
