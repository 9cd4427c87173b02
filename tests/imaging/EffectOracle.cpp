#include "EffectOracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "imaging/kernels/PhotoLooks.h"

namespace lumirra::oracle {

namespace {

constexpr double kFloatError = 1.2e-7;  // two roundings to single precision
constexpr double kPowerError = 5e-6;    // times 1 + gamma: what the kernels promise for x^gamma

using Color = std::array<Interval, 3>;

double Magnitude(Interval a) {
    return std::max(std::abs(a.low), std::abs(a.high));
}
Interval Widened(Interval a, double by) {
    return {a.low - by, a.high + by};
}
Interval Exact(double value) {
    return {value, value};
}
Interval operator+(Interval a, Interval b) {
    return Widened({a.low + b.low, a.high + b.high},
                   kFloatError * std::max(Magnitude(a), Magnitude(b)));
}
Interval operator-(Interval a, Interval b) {
    return a + Interval{-b.high, -b.low};
}
Interval operator*(Interval a, Interval b) {
    const auto [low, high] =
        std::minmax({a.low * b.low, a.low * b.high, a.high * b.low, a.high * b.high});
    return Widened({low, high}, kFloatError * std::max(std::abs(low), std::abs(high)));
}
Interval operator*(Interval a, double b) {
    return a * Exact(b);
}
Interval Clamped(Interval a) {
    return {std::clamp(a.low, 0.0, 1.0), std::clamp(a.high, 0.0, 1.0)};
}
Interval Hull(Interval a, Interval b) {
    return {std::min(a.low, b.low), std::max(a.high, b.high)};
}
/// The first where `value` reaches `limit`, else the second; both where that is not certain.
Interval WhereReached(Interval value, double limit, Interval reached, Interval otherwise) {
    if (value.low >= limit) {
        return reached;
    }
    return value.high >= limit ? Hull(reached, otherwise) : otherwise;
}

Interval Luminance(const Color& c) {
    return c[0] * 0.2125 + c[1] * 0.7154 + c[2] * 0.0721;
}

template <typename Change>
void ForEach(Color& color, const Change& change) {
    for (Interval& c : color) {
        c = Clamped(change(c));
    }
}

template <typename Matrix>
Color Multiply(const Matrix& m, const Color& c) {
    Color result;
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = c[0] * m[3 * i] + c[1] * m[3 * i + 1] + c[2] * m[3 * i + 2];
    }
    return result;
}

Interval Quantized(Interval c, double q) {
    const Interval scaled = c * q + Exact(0.5);
    return Clamped(Interval{std::floor(scaled.low), std::floor(scaled.high)} * (1 / q));
}

/// Through YIQ, with the rounded inverse matrix that textbooks print.
Color TurnedHue(const Color& color, double degrees) {
    const Interval y = color[0] * 0.299 + color[1] * 0.587 + color[2] * 0.114;
    const Interval i = color[0] * 0.595716 - color[1] * 0.274453 - color[2] * 0.321263;
    const Interval q = color[0] * 0.211456 - color[1] * 0.522591 + color[2] * 0.311135;
    const double angle = degrees * 3.14159265358979323846 / 180;
    const Interval turnedI = i * std::cos(angle) + q * std::sin(angle);
    const Interval turnedQ = q * std::cos(angle) - i * std::sin(angle);
    Color turned = {y + turnedI * 0.9563 + turnedQ * 0.6210,
                    y - turnedI * 0.2721 - turnedQ * 0.6474,
                    y - turnedI * 1.1070 + turnedQ * 1.7046};
    for (Interval& c : turned) {
        c = Clamped(Widened(c, 1e-4));  // the inverse has four digits
    }
    return turned;
}

void ApplyLook(const PhotoLook& look, Color& color) {
    color = Multiply(look.matrix, color);
    ForEach(color, [](Interval c) { return c; });
    const Interval grey = Luminance(color);
    ForEach(color, [&](Interval c) {
        return c + c * (Exact(1) - c) * (c - grey) * (4.0 * look.vividness);
    });
    for (std::size_t i = 0; i < 3; ++i) {
        const auto& k = look.curve[i];
        const Interval c = color[i];
        color[i] = Clamped(Exact(k[0]) + c * k[1] + c * c * k[2] + c * c * c * k[3]);
    }
}

void Adjust(const EffectSettings& s, Color& color) {
    if (s.brightness != 0) {
        ForEach(color, [&](Interval c) { return c + Exact(s.brightness); });
    }
    if (s.contrast != 1) {
        ForEach(color, [&](Interval c) { return (c - Exact(0.5)) * s.contrast + Exact(0.5); });
    }
    if (s.saturation != 1) {
        const Interval grey = Luminance(color) * (1.0 - s.saturation);
        ForEach(color, [&](Interval c) { return grey + c * s.saturation; });
    }
    if (s.exposure != 0) {
        ForEach(color, [&](Interval c) { return c * std::exp2(double{s.exposure}); });
    }
    if (s.gamma != 1) {
        ForEach(color, [&](Interval c) {
            const Interval power = {std::pow(c.low, s.gamma), std::pow(c.high, s.gamma)};
            return Widened(power, power.high * kPowerError * (1 + s.gamma));
        });
    }
    if (std::fmod(s.hue, 360.0F) != 0) {
        color = TurnedHue(color, s.hue);
    }
    if (s.colorEffectOn && s.colorEffectName) {
        if (const auto look = FindPhotoLook(*s.colorEffectName)) {
            ApplyLook(*look, color);
        }
    }
}

/// A picture of pixels that repeats its border pixels outside.
struct Picture {
    int width;
    int height;
    std::vector<Pixel> pixels;
    const Pixel& At(int x, int y) const {
        const int index = std::clamp(y, 0, height - 1) * width + std::clamp(x, 0, width - 1);
        return pixels[static_cast<std::size_t>(index)];
    }
    template <typename Make>
    Picture Map(const Make& make) const {
        Picture result{width, height, {}};
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                result.pixels.push_back(make(x, y));
            }
        }
        return result;
    }
};

Interval Sobel(const Picture& p, int x, int y) {
    const auto at = [&](int dx, int dy) { return Luminance(p.At(x + dx, y + dy).color); };
    const Interval across =
        (at(1, -1) + at(1, 0) * 2 + at(1, 1)) - (at(-1, -1) + at(-1, 0) * 2 + at(-1, 1));
    const Interval down =
        (at(-1, 1) + at(0, 1) * 2 + at(1, 1)) - (at(-1, -1) + at(0, -1) * 2 + at(1, -1));
    const auto square = [](Interval a) {
        const double small = a.low * a.high < 0 ? 0 : std::min(std::abs(a.low), std::abs(a.high));
        return Interval{small * small, Magnitude(a) * Magnitude(a)};
    };
    const Interval sum = square(across) + square(down);
    return {std::sqrt(std::max(sum.low, 0.0)), std::sqrt(sum.high) * (1 + kFloatError)};
}

/// Mean of the neighbours weighted by distance and, so that invisible colours do not show, alpha.
Pixel Blurred(const Picture& p, int x, int y, double sigma) {
    const int radius = static_cast<int>(std::ceil(3 * sigma));
    std::array<double, 3> low{};
    std::array<double, 3> high{};
    double sum = 0;
    for (int dy = -radius; dy <= radius; ++dy) {
        for (int dx = -radius; dx <= radius; ++dx) {
            const Pixel& from = p.At(x + dx, y + dy);
            const double weight = std::exp(-(dx * dx + dy * dy) / (2 * sigma * sigma)) * from.alpha;
            sum += weight;
            for (std::size_t i = 0; i < 3; ++i) {
                low[i] += weight * from.color[i].low;
                high[i] += weight * from.color[i].high;
            }
        }
    }
    Pixel result = p.At(x, y);
    for (std::size_t i = 0; i < 3; ++i) {
        result.color[i] = {low[i] / std::max(sum, 1e-300), high[i] / std::max(sum, 1e-300)};
        // Two sums of 2 * radius + 1 terms each, a product and a quotient for the weighting.
        result.color[i] = Clamped(Widened(result.color[i], (4 * radius + 6) * kFloatError));
    }
    return result;
}

}  // namespace

std::vector<Pixel> Chain(const QImage& image, const EffectSettings& s) {
    Picture p{image.width(), image.height(), {}};
    for (int y = 0; y < p.height; ++y) {
        for (int x = 0; x < p.width; ++x) {
            const uchar* bytes = image.constScanLine(y) + 4 * x;
            Pixel pixel;
            for (std::size_t i = 0; i < 3; ++i) {
                pixel.color[i] = Exact(1.0 / 255) * bytes[i];
            }
            pixel.alpha = bytes[3];
            Adjust(s, pixel.color);
            p.pixels.push_back(pixel);
        }
    }
    if (s.cartoonOn) {
        if (s.cartoonBlur > 0) {
            p = p.Map([&](int x, int y) { return Blurred(p, x, y, s.cartoonBlur); });
        }
        p = p.Map([&](int x, int y) {
            Pixel pixel = p.At(x, y);
            for (Interval& c : pixel.color) {
                c = WhereReached(Sobel(p, x, y), s.cartoonThreshold, Exact(0),
                                 Quantized(c, s.cartoonQuantization));
            }
            return pixel;
        });
    }
    if (s.sketchOn) {
        p = p.Map([&](int x, int y) {
            const Interval paper =
                WhereReached(Sobel(p, x, y) * s.sketchEdge, s.sketchIntensity, Exact(0), Exact(1));
            return Pixel{{paper, paper, paper}, 255};
        });
    }
    if (s.vignetteOn) {
        p = p.Map([&](int x, int y) {
            const double start = 0.5 + s.vignetteRadius;
            const double d = std::hypot((x + 0.5) / p.width - 0.5, (y + 0.5) / p.height - 0.5);
            const double t = std::clamp((d - start) / 0.25, 0.0, 1.0);
            const double part = t * t * (3 - 2 * t);
            Pixel pixel = p.At(x, y);
            for (Interval& c : pixel.color) {
                c = Clamped(c * Widened(Exact(1 - part), 4e-6));
            }
            return pixel;
        });
    }
    return p.pixels;
}

double ExpectInside(const QImage& result, const std::vector<Pixel>& bounds) {
    EXPECT_EQ(result.format(), QImage::Format_RGBA8888);
    const auto width = static_cast<std::size_t>(result.width());
    if (width * static_cast<std::size_t>(result.height()) != bounds.size()) {
        ADD_FAILURE() << "the result has another size";
        return 0;
    }
    std::size_t undecided = 0;
    for (std::size_t at = 0; at < bounds.size(); ++at) {
        const uchar* bytes = result.constScanLine(static_cast<int>(at / width)) + 4 * (at % width);
        const Pixel& pixel = bounds[at];
        bool inside = bytes[3] == pixel.alpha;
        bool open = false;
        for (std::size_t i = 0; pixel.alpha != 0 && i < 3; ++i) {
            const Interval c = pixel.color[i];
            inside = inside && bytes[i] >= 255 * c.low - 0.501 && bytes[i] <= 255 * c.high + 0.501;
            open = open || 255 * (c.high - c.low) > 0.5;
        }
        if (!inside) {
            ADD_FAILURE() << "column " << at % width << ", row " << at / width;
            return 0;
        }
        undecided += open ? 1 : 0;
    }
    return static_cast<double>(undecided) / static_cast<double>(bounds.size());
}

QImage TestPicture(int width, int height, bool transparency, unsigned seed) {
    std::mt19937 random(seed);
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        uchar* pixel = image.scanLine(y);
        for (int x = 0; x < width; ++x, pixel += 4) {
            for (int i = 0; i < 3; ++i) {
                const double wave = std::sin(0.3 * x + i) * std::cos(0.2 * y + seed);
                const int kind = (x / 7 + y / 5) % 4;
                pixel[i] = kind == 0   ? static_cast<uchar>(random())
                           : kind == 1 ? static_cast<uchar>(80 * i * ((x / 7) % 2))
                                       : static_cast<uchar>(128 + 120 * wave);
            }
            const bool hole = (x / 4 + y / 3) % 3 == 0;
            pixel[3] = !transparency ? 255 : hole ? 0 : static_cast<uchar>(random());
        }
    }
    return image;
}

}  // namespace lumirra::oracle
