#include "output/gif/palette/PaletteQuantizer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <queue>
#include <unordered_set>

#include "output/gif/Yuv.h"
#include "output/gif/palette/NearestColor.h"

namespace lumirra::gif {

namespace {

std::uint32_t Packed(Rgba color) {
    return static_cast<std::uint32_t>(color.r) << 16U | static_cast<std::uint32_t>(color.g) << 8U |
           color.b;
}

Rgba Unpacked(std::uint32_t packed) {
    return {static_cast<std::uint8_t>(packed >> 16U),
            static_cast<std::uint8_t>(packed >> 8U & 255U),
            static_cast<std::uint8_t>(packed & 255U), 255};
}

bool Before(Rgba a, Rgba b) {
    return Packed(a) < Packed(b);
}

std::size_t BinIndex(Rgba color) {
    return static_cast<std::size_t>(color.r >> 3U) << 11U |
           static_cast<std::size_t>(color.g >> 2U) << 5U | static_cast<std::size_t>(color.b >> 3U);
}

struct Points {
    std::vector<Yuv> yuvs;
    std::vector<float> weights;
};

Points PointsOf(const std::vector<ColorBin>& bins) {
    Points points;
    points.yuvs.reserve(bins.size());
    points.weights.reserve(bins.size());
    for (const ColorBin& bin : bins) {
        points.yuvs.push_back(YuvOf(static_cast<float>(bin.r / bin.weight),
                                    static_cast<float>(bin.g / bin.weight),
                                    static_cast<float>(bin.b / bin.weight)));
        points.weights.push_back(static_cast<float>(bin.weight));
    }
    return points;
}

/// A set of points, cut where that lowers the squared error most.
struct Box {
    std::size_t first = 0;
    std::size_t last = 0;
    double error = 0;
    int axis = 0;
    bool operator<(const Box& other) const {
        return error != other.error ? error < other.error : first > other.first;
    }
};

float Along(const Yuv& yuv, int axis) {
    return axis == 0 ? yuv.y : axis == 1 ? yuv.u : yuv.v;
}

class Splitter {
  public:
    explicit Splitter(const Points& points) : points_(points), order_(points.yuvs.size()) {
        for (std::size_t i = 0; i < order_.size(); ++i) {
            order_[i] = static_cast<std::uint32_t>(i);
        }
    }

    std::vector<Yuv> Split(std::size_t limit) {
        std::priority_queue<Box> open;
        open.push(Measure(0, order_.size()));
        while (open.size() < limit && open.top().error > 0) {
            const Box box = open.top();
            open.pop();
            const std::size_t middle = Cut(box);
            open.push(Measure(box.first, middle));
            open.push(Measure(middle, box.last));
        }
        std::vector<Yuv> centers;
        for (; !open.empty(); open.pop()) {
            centers.push_back(Mean(open.top().first, open.top().last));
        }
        return centers;
    }

  private:
    struct Moments {
        double weight = 0;
        std::array<double, 3> sum{};
        std::array<double, 3> squares{};
    };

    Moments MomentsOf(std::size_t first, std::size_t last) const {
        Moments moments;
        for (std::size_t i = first; i < last; ++i) {
            const double weight = points_.weights[order_[i]];
            moments.weight += weight;
            for (int axis = 0; axis < 3; ++axis) {
                const double value = Along(points_.yuvs[order_[i]], axis);
                moments.sum[static_cast<std::size_t>(axis)] += weight * value;
                moments.squares[static_cast<std::size_t>(axis)] += weight * value * value;
            }
        }
        return moments;
    }

    Yuv Mean(std::size_t first, std::size_t last) const {
        const Moments m = MomentsOf(first, last);
        return {static_cast<float>(m.sum[0] / m.weight), static_cast<float>(m.sum[1] / m.weight),
                static_cast<float>(m.sum[2] / m.weight)};
    }

    Box Measure(std::size_t first, std::size_t last) const {
        Box box{first, last, 0, 0};
        if (last - first < 2) {
            return box;
        }
        const Moments m = MomentsOf(first, last);
        double widest = -1;
        for (int axis = 0; axis < 3; ++axis) {
            const auto a = static_cast<std::size_t>(axis);
            const double spread = std::max(m.squares[a] - m.sum[a] * m.sum[a] / m.weight, 0.0);
            box.error += spread;
            if (spread > widest) {
                widest = spread;
                box.axis = axis;
            }
        }
        return box;
    }

    /// Sorts along the widest axis and cuts where the two halves vary least.
    std::size_t Cut(const Box& box) {
        const int axis = box.axis;
        const auto value = [&](std::uint32_t i) { return Along(points_.yuvs[i], axis); };
        std::sort(order_.begin() + static_cast<std::ptrdiff_t>(box.first),
                  order_.begin() + static_cast<std::ptrdiff_t>(box.last),
                  [&](std::uint32_t a, std::uint32_t b) {
                      return value(a) != value(b) ? value(a) < value(b) : a < b;
                  });
        double total = 0;
        double sum = 0;
        for (std::size_t i = box.first; i < box.last; ++i) {
            total += points_.weights[order_[i]];
            sum += static_cast<double>(points_.weights[order_[i]]) * value(order_[i]);
        }
        double leftWeight = 0;
        double leftSum = 0;
        double best = -1;
        std::size_t cut = box.first + 1;
        for (std::size_t i = box.first; i + 1 < box.last; ++i) {
            leftWeight += points_.weights[order_[i]];
            leftSum += static_cast<double>(points_.weights[order_[i]]) * value(order_[i]);
            const double rightSum = sum - leftSum;
            const double gain =
                leftSum * leftSum / leftWeight + rightSum * rightSum / (total - leftWeight);
            if (gain > best) {
                best = gain;
                cut = i + 1;
            }
        }
        return cut;
    }

    const Points& points_;
    std::vector<std::uint32_t> order_;
};

struct Cluster {
    double weight = 0;
    double y = 0;
    double u = 0;
    double v = 0;
};

void Refine(const Points& points, std::vector<Yuv>& centers, std::vector<std::uint8_t>& nearest) {
    constexpr int kRounds = 4;
    for (int round = 0; round < kRounds; ++round) {
        NearestCenters(points.yuvs, centers, nearest);
        std::vector<Cluster> clusters(centers.size());
        for (std::size_t i = 0; i < points.yuvs.size(); ++i) {
            Cluster& cluster = clusters[nearest[i]];
            const double weight = points.weights[i];
            cluster.weight += weight;
            cluster.y += weight * points.yuvs[i].y;
            cluster.u += weight * points.yuvs[i].u;
            cluster.v += weight * points.yuvs[i].v;
        }
        for (std::size_t c = 0; c < centers.size(); ++c) {
            const Cluster& cluster = clusters[c];
            if (cluster.weight > 0) {
                centers[c] = {static_cast<float>(cluster.y / cluster.weight),
                              static_cast<float>(cluster.u / cluster.weight),
                              static_cast<float>(cluster.v / cluster.weight)};
            }
        }
    }
    NearestCenters(points.yuvs, centers, nearest);
}

Rgba Rounded(const Yuv& yuv) {
    const RgbValue value = RgbOf(yuv);
    const auto level = [](float v) {
        return static_cast<std::uint8_t>(std::lround(std::clamp(v, 0.0F, 255.0F)));
    };
    return {level(value.r), level(value.g), level(value.b), 255};
}

/// A colour that most pixels near a centre have exactly, as flat areas do, takes its place.
std::vector<Rgba> Settle(const std::vector<ColorBin>& bins, const std::vector<Yuv>& centers,
                         const std::vector<std::uint8_t>& nearest) {
    std::vector<double> weights(centers.size());
    std::vector<const ColorBin*> strongest(centers.size(), nullptr);
    for (std::size_t i = 0; i < bins.size(); ++i) {
        const std::size_t center = nearest[i];
        weights[center] += bins[i].weight;
        if (strongest[center] == nullptr ||
            bins[i].majorityLead > strongest[center]->majorityLead) {
            strongest[center] = &bins[i];
        }
    }
    std::vector<Rgba> palette;
    palette.reserve(centers.size());
    for (std::size_t c = 0; c < centers.size(); ++c) {
        if (strongest[c] == nullptr) {
            continue;
        }
        const bool flat = strongest[c]->majorityLead > 0.5 * weights[c];
        palette.push_back(flat ? Unpacked(strongest[c]->majority) : Rounded(centers[c]));
    }
    return palette;
}

}  // namespace

std::optional<std::vector<Rgba>> FewColors(const Canvas& picture, std::size_t limit,
                                           const std::vector<std::uint8_t>& where) {
    std::unordered_set<std::uint32_t> seen;
    bool any = false;
    std::uint32_t last = 0;
    for (std::size_t i = 0; i < picture.Size(); ++i) {
        const Rgba color = picture.pixels[i];
        if (color.a == 0 || (!where.empty() && where[i] == 0)) {
            continue;
        }
        const std::uint32_t packed = Packed(color);
        if (any && packed == last) {
            continue;
        }
        any = true;
        last = packed;
        if (seen.insert(packed).second && seen.size() > limit) {
            return std::nullopt;
        }
    }
    std::vector<std::uint32_t> sorted(seen.begin(), seen.end());
    std::sort(sorted.begin(), sorted.end());
    std::vector<Rgba> colors;
    colors.reserve(sorted.size());
    for (const std::uint32_t packed : sorted) {
        colors.push_back(Unpacked(packed));
    }
    return colors;
}

std::vector<Rgba> Union(const std::vector<Rgba>& a, const std::vector<Rgba>& b) {
    std::vector<Rgba> all;
    all.reserve(a.size() + b.size());
    std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(all), Before);
    return all;
}

bool Contains(const std::vector<Rgba>& palette, const std::vector<Rgba>& colors) {
    return std::includes(palette.begin(), palette.end(), colors.begin(), colors.end(), Before);
}

std::vector<ColorBin> CountColors(const Canvas& picture,
                                  const std::vector<std::uint8_t>& importance) {
    constexpr std::size_t kBins = std::size_t{1} << 16U;
    std::vector<std::uint32_t> places(kBins);  // one more than the bin's index; 0: none yet
    std::vector<ColorBin> found;
    for (std::size_t i = 0; i < picture.Size(); ++i) {
        const Rgba color = picture.pixels[i];
        const double weight = importance.empty() ? 1.0 : importance[i];
        if (color.a == 0 || weight == 0) {
            continue;
        }
        std::uint32_t& place = places[BinIndex(color)];
        if (place == 0) {
            found.emplace_back();
            place = static_cast<std::uint32_t>(found.size());
        }
        ColorBin& bin = found[place - 1];
        bin.weight += weight;
        bin.r += weight * color.r;
        bin.g += weight * color.g;
        bin.b += weight * color.b;
        const std::uint32_t packed = Packed(color);
        if (packed == bin.majority) {
            bin.majorityLead += weight;
        } else if (bin.majorityLead >= weight) {
            bin.majorityLead -= weight;
        } else {
            bin.majority = packed;
            bin.majorityLead = weight - bin.majorityLead;
        }
    }
    std::vector<ColorBin> bins;
    bins.reserve(found.size());
    for (const std::uint32_t place : places) {
        if (place != 0) {
            bins.push_back(found[place - 1]);
        }
    }
    return bins;
}

std::vector<Rgba> QuantizePalette(const std::vector<ColorBin>& bins, std::size_t limit) {
    if (bins.empty()) {
        return {Rgba{0, 0, 0, 255}};
    }
    const Points points = PointsOf(bins);
    std::vector<Yuv> centers = Splitter(points).Split(limit);
    std::vector<std::uint8_t> nearest;
    Refine(points, centers, nearest);
    std::vector<Rgba> palette = Settle(bins, centers, nearest);
    std::sort(palette.begin(), palette.end(), Before);
    palette.erase(std::unique(palette.begin(), palette.end()), palette.end());
    return palette;
}

double PaletteError(const std::vector<ColorBin>& colors, const std::vector<Rgba>& palette) {
    const Points points = PointsOf(colors);
    std::vector<Yuv> centers;
    centers.reserve(palette.size());
    for (const Rgba& color : palette) {
        centers.push_back(YuvOf(color));
    }
    std::vector<std::uint8_t> nearest;
    NearestCenters(points.yuvs, centers, nearest);
    double error = 0;
    for (std::size_t i = 0; i < nearest.size(); ++i) {
        error += static_cast<double>(points.weights[i]) *
                 SquaredDistance(points.yuvs[i], centers[nearest[i]]);
    }
    return error;
}

}  // namespace lumirra::gif
