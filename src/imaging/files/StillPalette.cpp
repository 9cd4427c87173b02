#include "imaging/files/StillPalette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace lumirra {
namespace {

constexpr std::size_t kMaxColors = 255;
constexpr std::uint8_t kTransparent = IndexedPicture::kTransparent;
using Rgb = IndexedPicture::Rgb;
constexpr int kOpaqueFrom = 128;

std::uint32_t Key(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) << 16 | static_cast<std::uint32_t>(p[1]) << 8 | p[2];
}

/// Absent when there are more colours than a palette holds.
std::optional<IndexedPicture> IndexExactly(const QImage& rgba) {
    IndexedPicture picture;
    picture.pixels.reserve(static_cast<std::size_t>(rgba.width()) *
                           static_cast<std::size_t>(rgba.height()));
    std::unordered_map<std::uint32_t, std::uint8_t> indices;
    const int width = rgba.width();
    for (int y = 0; y < rgba.height(); ++y) {
        const std::uint8_t* p = rgba.constScanLine(y);
        for (int x = 0; x < width; ++x, p += 4) {
            if (p[3] < kOpaqueFrom) {
                picture.pixels.push_back(kTransparent);
                picture.hasTransparency = true;
                continue;
            }
            const auto [entry, isNew] =
                indices.try_emplace(Key(p), static_cast<std::uint8_t>(picture.palette.size()));
            if (isNew) {
                if (picture.palette.size() == kMaxColors) {
                    return std::nullopt;
                }
                picture.palette.push_back({p[0], p[1], p[2]});
            }
            picture.pixels.push_back(entry->second);
        }
    }
    return picture;
}

/// All opaque pixels whose channels agree in their upper five bits.
struct Bin {
    std::array<std::uint64_t, 3> sum{};
    std::uint64_t count = 0;
    double Mean(int channel) const {
        return static_cast<double>(sum[static_cast<std::size_t>(channel)]) /
               static_cast<double>(count);
    }
};

std::size_t BinOf(int r, int g, int b) {
    return static_cast<std::size_t>((r >> 3) << 10 | (g >> 3) << 5 | b >> 3);
}

std::vector<Bin> UsedBins(const QImage& rgba) {
    std::vector<Bin> bins(32768);
    const int width = rgba.width();
    for (int y = 0; y < rgba.height(); ++y) {
        const std::uint8_t* p = rgba.constScanLine(y);
        for (int x = 0; x < width; ++x, p += 4) {
            if (p[3] >= kOpaqueFrom) {
                Bin& bin = bins[BinOf(p[0], p[1], p[2])];
                ++bin.count;
                for (std::size_t c = 0; c < 3; ++c) {
                    bin.sum[c] += p[c];
                }
            }
        }
    }
    std::erase_if(bins, [](const Bin& bin) { return bin.count == 0; });
    return bins;
}

/// A run of bins, with its mean colour and the axis along which its colours spread most.
struct Box {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::array<double, 3> mean{};
    int axis = 0;
    double spread = 0;
};

Box MakeBox(const std::vector<Bin>& bins, std::size_t begin, std::size_t end) {
    Box box{begin, end, {}, 0, 0};
    for (int c = 0; c < 3; ++c) {
        double weight = 0;
        double sum = 0;
        double squares = 0;
        for (std::size_t i = begin; i < end; ++i) {
            const auto n = static_cast<double>(bins[i].count);
            const double value = bins[i].Mean(c);
            weight += n;
            sum += n * value;
            squares += n * value * value;
        }
        box.mean[static_cast<std::size_t>(c)] = sum / weight;
        const double spread = squares - sum * sum / weight;
        if (spread > box.spread) {
            box.spread = spread;
            box.axis = c;
        }
    }
    return box;
}

std::vector<Rgb> MedianCut(std::vector<Bin> bins) {
    std::vector<Box> boxes = {MakeBox(bins, 0, bins.size())};
    while (boxes.size() < kMaxColors) {
        const auto widest =
            std::max_element(boxes.begin(), boxes.end(),
                             [](const Box& a, const Box& b) { return a.spread < b.spread; });
        const Box box = *widest;
        const auto first = bins.begin() + static_cast<std::ptrdiff_t>(box.begin);
        const auto last = bins.begin() + static_cast<std::ptrdiff_t>(box.end);
        const auto split = std::partition(first, last, [&box](const Bin& bin) {
            return bin.Mean(box.axis) < box.mean[static_cast<std::size_t>(box.axis)];
        });
        if (split == first || split == last) {
            break;  // nothing left that differs
        }
        const auto middle = static_cast<std::size_t>(split - bins.begin());
        *widest = MakeBox(bins, box.begin, middle);
        boxes.push_back(MakeBox(bins, middle, box.end));
    }
    std::vector<Rgb> palette;
    for (const Box& box : boxes) {
        Rgb color{};
        std::transform(box.mean.begin(), box.mean.end(), color.begin(),
                       [](double mean) { return static_cast<std::uint8_t>(std::lround(mean)); });
        palette.push_back(color);
    }
    return palette;
}

std::uint8_t Nearest(const std::vector<Rgb>& palette, const std::array<int, 3>& wanted) {
    std::size_t best = 0;
    int bestDistance = INT32_MAX;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const int r = palette[i][0] - wanted[0];
        const int g = palette[i][1] - wanted[1];
        const int b = palette[i][2] - wanted[2];
        const int distance = 2 * r * r + 4 * g * g + b * b;
        if (distance < bestDistance) {
            bestDistance = distance;
            best = i;
        }
    }
    return static_cast<std::uint8_t>(best);
}

/// Floyd-Steinberg diffusion in sixteenths; the palette search is remembered per five-bit colour.
class Ditherer {
  public:
    Ditherer(const std::vector<Rgb>& palette, int width)
        : palette_(palette), nearest_(32768, -1), width_(static_cast<std::size_t>(width)) {
        below_.resize((width_ + 2) * 3);
    }

    void Row(const std::uint8_t* p, std::vector<std::uint8_t>& out) {
        std::vector<int> here(below_.size());
        here.swap(below_);
        for (std::size_t x = 0; x < width_; ++x, p += 4) {
            if (p[3] < kOpaqueFrom) {
                out.push_back(kTransparent);
                continue;
            }
            std::array<int, 3> wanted{};
            for (std::size_t c = 0; c < 3; ++c) {
                wanted[c] = std::clamp(p[c] + (here[(x + 1) * 3 + c] + 8) / 16, 0, 255);
            }
            const std::uint8_t index = Lookup(wanted);
            for (std::size_t c = 0; c < 3; ++c) {
                const int error = wanted[c] - palette_[index][c];
                here[(x + 2) * 3 + c] += error * 7;
                below_[x * 3 + c] += error * 3;
                below_[(x + 1) * 3 + c] += error * 5;
                below_[(x + 2) * 3 + c] += error;
            }
            out.push_back(index);
        }
    }

  private:
    std::uint8_t Lookup(const std::array<int, 3>& wanted) {
        short& known = nearest_[BinOf(wanted[0], wanted[1], wanted[2])];
        if (known < 0) {
            known = Nearest(palette_, {wanted[0] | 4, wanted[1] | 4, wanted[2] | 4});
        }
        return static_cast<std::uint8_t>(known);
    }

    const std::vector<Rgb>& palette_;
    std::vector<short> nearest_;
    std::size_t width_;
    std::vector<int> below_;
};

IndexedPicture IndexByDither(const QImage& rgba) {
    IndexedPicture picture;
    picture.palette = MedianCut(UsedBins(rgba));
    Ditherer ditherer(picture.palette, rgba.width());
    for (int y = 0; y < rgba.height(); ++y) {
        ditherer.Row(rgba.constScanLine(y), picture.pixels);
    }
    picture.hasTransparency =
        std::ranges::find(picture.pixels, kTransparent) != picture.pixels.end();
    return picture;
}

}  // namespace

IndexedPicture ReduceColors(const QImage& rgba) {
    auto exact = IndexExactly(rgba);
    return exact ? std::move(*exact) : IndexByDither(rgba);
}

}  // namespace lumirra
