#include "output/GifQuality.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lumirra::test {

namespace {

constexpr int kRadius = 5;

struct Plane {
    int width = 0;
    int height = 0;
    std::vector<float> values;

    std::size_t At(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

int Mirrored(int i, int count) {
    return i < 0 ? std::min(-i - 1, count - 1) : i >= count ? std::max(2 * count - 1 - i, 0) : i;
}

std::array<float, 2 * kRadius + 1> Kernel(double sigma) {
    std::array<float, 2 * kRadius + 1> kernel{};
    double sum = 0;
    for (int i = -kRadius; i <= kRadius; ++i) {
        sum += std::exp(-0.5 * i * i / (sigma * sigma));
    }
    for (int i = -kRadius; i <= kRadius; ++i) {
        kernel[static_cast<std::size_t>(i + kRadius)] =
            static_cast<float>(std::exp(-0.5 * i * i / (sigma * sigma)) / sum);
    }
    return kernel;
}

Plane Blurred(const Plane& plane, double sigma) {
    const auto kernel = Kernel(sigma);
    Plane down = plane;
    for (int y = 0; y < plane.height; ++y) {
        float* out = &down.values[plane.At(0, y)];
        std::fill_n(out, plane.width, 0.0F);
        for (int i = -kRadius; i <= kRadius; ++i) {
            const float* in = &plane.values[plane.At(0, Mirrored(y + i, plane.height))];
            const float part = kernel[static_cast<std::size_t>(i + kRadius)];
            for (int x = 0; x < plane.width; ++x) {
                out[x] += part * in[x];
            }
        }
    }
    Plane across = down;
    std::vector<float> row(static_cast<std::size_t>(plane.width + 2 * kRadius));
    for (int y = 0; y < plane.height; ++y) {
        for (int x = -kRadius; x < plane.width + kRadius; ++x) {
            row[static_cast<std::size_t>(x + kRadius)] =
                down.values[plane.At(Mirrored(x, plane.width), y)];
        }
        float* out = &across.values[plane.At(0, y)];
        std::fill_n(out, plane.width, 0.0F);
        for (std::size_t i = 0; i < kernel.size(); ++i) {
            for (int x = 0; x < plane.width; ++x) {
                out[x] += kernel[i] * row[static_cast<std::size_t>(x) + i];
            }
        }
    }
    return across;
}

Plane Product(const Plane& a, const Plane& b) {
    Plane product = a;
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        product.values[i] *= b.values[i];
    }
    return product;
}

/// With a Gaussian window of 1.5 pixels; the border that it does not fill is left out.
double Similarity(const Plane& a, const Plane& b) {
    constexpr double kSigma = 1.5;
    constexpr double kC1 = 0.01 * 255 * 0.01 * 255;
    constexpr double kC2 = 0.03 * 255 * 0.03 * 255;
    const Plane meanA = Blurred(a, kSigma);
    const Plane meanB = Blurred(b, kSigma);
    const Plane squareA = Blurred(Product(a, a), kSigma);
    const Plane squareB = Blurred(Product(b, b), kSigma);
    const Plane both = Blurred(Product(a, b), kSigma);
    double sum = 0;
    for (int y = kRadius; y < a.height - kRadius; ++y) {
        for (int x = kRadius; x < a.width - kRadius; ++x) {
            const std::size_t i = a.At(x, y);
            const double ma = meanA.values[i];
            const double mb = meanB.values[i];
            const double variances = squareA.values[i] - ma * ma + squareB.values[i] - mb * mb;
            const double covariance = both.values[i] - ma * mb;
            sum += (2 * ma * mb + kC1) * (2 * covariance + kC2) /
                   ((ma * ma + mb * mb + kC1) * (variances + kC2));
        }
    }
    return sum / (static_cast<double>(a.width - 2 * kRadius) * (a.height - 2 * kRadius));
}

Plane Channel(const QImage& image, int channel) {
    Plane plane{image.width(), image.height(), {}};
    plane.values.reserve(static_cast<std::size_t>(image.width() * image.height()));
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            plane.values.push_back(row[4 * x + channel]);
        }
    }
    return plane;
}

double SquaredError(const Plane& a, const Plane& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        const double difference = a.values[i] - b.values[i];
        sum += difference * difference;
    }
    return sum / static_cast<double>(a.values.size());
}

double Decibels(double meanSquare) {
    return meanSquare > 0 ? 10 * std::log10(255 * 255 / meanSquare) : 99;
}

GifQuality CompareImage(const QImage& shown, const QImage& source) {
    constexpr double kBlur = 1.2;
    constexpr std::array<float, 3> kLuma = {0.299F, 0.587F, 0.114F};
    double error = 0;
    double blurredError = 0;
    std::array<Plane, 4> lumas;  // shown, source, both again blurred
    for (int channel = 0; channel < 3; ++channel) {
        std::array<Plane, 4> planes = {Channel(shown, channel), Channel(source, channel), {}, {}};
        planes[2] = Blurred(planes[0], kBlur);
        planes[3] = Blurred(planes[1], kBlur);
        error += SquaredError(planes[0], planes[1]) / 3;
        blurredError += SquaredError(planes[2], planes[3]) / 3;
        for (std::size_t p = 0; p < planes.size(); ++p) {
            Plane& luma = lumas[p];
            if (channel == 0) {
                luma = planes[p];
                std::fill(luma.values.begin(), luma.values.end(), 0.0F);
            }
            for (std::size_t i = 0; i < luma.values.size(); ++i) {
                luma.values[i] += kLuma[static_cast<std::size_t>(channel)] * planes[p].values[i];
            }
        }
    }
    return {Decibels(error), Decibels(blurredError), Similarity(lumas[0], lumas[1]),
            Similarity(lumas[2], lumas[3]), 0};
}

/// Mean change from `before` to `now` where their sources differ by one level at most; below 0 when
/// that is nowhere.
double Flicker(const QImage& before, const QImage& now, const QImage& sourceBefore,
               const QImage& source) {
    double sum = 0;
    long long samples = 0;
    for (int y = 0; y < now.height(); ++y) {
        const std::array<const uchar*, 4> rows = {before.constScanLine(y), now.constScanLine(y),
                                                  sourceBefore.constScanLine(y),
                                                  source.constScanLine(y)};
        for (int x = 0; x < now.width(); ++x) {
            int moved = 0;
            int change = 0;
            for (int i = 4 * x; i < 4 * x + 3; ++i) {
                moved = std::max(moved, std::abs(rows[2][i] - rows[3][i]));
                change += std::abs(rows[0][i] - rows[1][i]);
            }
            if (moved <= 1) {
                sum += change;
                samples += 3;
            }
        }
    }
    return samples > 0 ? sum / static_cast<double>(samples) : -1;
}

}  // namespace

GifQuality CompareImages(const std::vector<QImage>& images, const QStringList& frames) {
    GifQuality sum;
    int compared = 0;
    int flickers = 0;
    const auto load = [&](std::size_t i) {
        return QImage(frames.at(static_cast<int>(i))).convertToFormat(QImage::Format_RGBA8888);
    };
    const auto count = std::min(images.size(), static_cast<std::size_t>(frames.size()));
    for (std::size_t i = 0; i < count; ++i) {
        const QImage source = load(i);
        const GifQuality one = CompareImage(images[i], source);
        sum.psnr += one.psnr;
        sum.psnrb += one.psnrb;
        sum.ssim += one.ssim;
        sum.ssimb += one.ssimb;
        ++compared;
        const double flick = i > 0 ? Flicker(images[i - 1], images[i], load(i - 1), source) : -1;
        if (flick >= 0) {
            sum.flick += flick;
            ++flickers;
        }
    }
    const double share = 1.0 / std::max(compared, 1);
    return {sum.psnr * share, sum.psnrb * share, sum.ssim * share, sum.ssimb * share,
            sum.flick / std::max(flickers, 1)};
}

}  // namespace lumirra::test
