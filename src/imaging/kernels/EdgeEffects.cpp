#include "imaging/kernels/EdgeEffects.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "imaging/PictureFormat.h"
#include "imaging/RowBands.h"
#include "imaging/kernels/PlaneRing.h"

namespace lumirra {

namespace {

/// Standard deviations below this are no blur: the neighbours' share would be under 1e-9.
constexpr float kSmallestBlur = 0.15F;
/// And this bounds the memory; far above what the control gives.
constexpr float kLargestBlur = 64;

/// Symmetric weights of sum 1 reaching three standard deviations, with the zeros around them that
/// `RowKernels::blurAcrossRows` wants.
class GaussianWeights {
  public:
    explicit GaussianWeights(float deviation) {
        if (!(deviation >= kSmallestBlur)) {
            return;
        }
        const double sigma = std::min(deviation, kLargestBlur);
        radius_ = static_cast<int>(std::ceil(3 * sigma));
        std::vector<double> exact;
        double sum = 0;
        for (int i = -radius_; i <= radius_; ++i) {
            exact.push_back(std::exp(-i * i / (2 * sigma * sigma)));
            sum += exact.back();
        }
        padded_.assign(exact.size() + 2 * kZeros, 0.0F);
        std::transform(exact.begin(), exact.end(), padded_.begin() + kZeros,
                       [sum](double weight) { return static_cast<float>(weight / sum); });
    }
    int radius() const { return radius_; }
    const float* data() const { return padded_.data() + kZeros; }

  private:
    static constexpr int kZeros = kBlurredRows - 1;
    int radius_ = 0;
    std::vector<float> padded_;
};

bool IsOpaque(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        uchar all = 255;
        for (int x = 0; x < image.width(); ++x) {
            all &= row[4 * x + 3];
        }
        if (all != 255) {
            return false;
        }
    }
    return true;
}

/// A stage of the pass: gives rows with their luminance, extended by one pixel to both sides. Rows
/// are asked for in ascending order; the last three remain valid.
class RowSource {
  public:
    virtual ~RowSource() = default;
    virtual Planes Row(int y) = 0;
};

RowsAround LuminanceAround(RowSource& source, int y, int height) {
    const float* above = source.Row(std::max(y - 1, 0))[3];
    const float* at = source.Row(y)[3];
    return {above, at, source.Row(std::min(y + 1, height - 1))[3]};
}

/// The source's rows after the steps, blurred. Colours are weighted by their alpha, so that what is
/// invisible does not bleed into what is visible.
class SmoothRows final : public RowSource {
  public:
    SmoothRows(const QImage& image, const ColorSteps& steps, const GaussianWeights& weights,
               bool premultiplied, int first)
        : image_(image),
          steps_(steps),
          weights_(weights),
          radius_(weights.radius()),
          premultiplied_(premultiplied && radius_ > 0),
          loaded_(1, image.width(), radius_),
          across_(2 * radius_ + kBlurredRows, image.width(), 0),
          smooth_(2 * kBlurredRows, image.width(), 1),
          nextAcross_(std::max(first - radius_, 0)),
          next_(first) {}

    Planes Row(int y) override {
        while (next_ <= y) {
            if (radius_ == 0) {
                Load(next_, smooth_.Row(next_));
                Finish(next_++);
            } else {
                Blur();
            }
        }
        return smooth_.Row(y);
    }

  private:
    void Load(int y, const Planes& row) const {
        kernels_.load(steps_, premultiplied_, image_.constScanLine(y), row, Width());
    }

    /// Blurs along the row the next source row.
    void LoadAcross() {
        const Planes row = loaded_.Row(0);
        const Planes out = across_.Row(nextAcross_);
        Load(nextAcross_++, row);
        for (std::size_t channel = 0; channel < Channels(); ++channel) {
            loaded_.ExtendEnds(row[channel], radius_);
            kernels_.blurAlongRow(row[channel], weights_.data(), radius_, out[channel], Width());
        }
    }

    /// Makes the next `kBlurredRows` rows; those below the picture repeat its last one.
    void Blur() {
        const int last = image_.height() - 1;
        while (nextAcross_ <= std::min(next_ + kBlurredRows - 1 + radius_, last)) {
            LoadAcross();
        }
        std::vector<const float*> in(static_cast<std::size_t>(2 * radius_ + kBlurredRows));
        std::array<float*, kBlurredRows> out{};
        for (std::size_t channel = 0; channel < Channels(); ++channel) {
            for (int i = 0; i < static_cast<int>(in.size()); ++i) {
                const int y = std::clamp(next_ - radius_ + i, 0, last);
                in[static_cast<std::size_t>(i)] = across_.Row(y)[channel];
            }
            for (int i = 0; i < kBlurredRows; ++i) {
                out[static_cast<std::size_t>(i)] = smooth_.Row(next_ + i)[channel];
            }
            kernels_.blurAcrossRows(in.data(), weights_.data(), radius_, out.data(), Width());
        }
        for (int i = 0; i < kBlurredRows; ++i) {
            Finish(next_++);
        }
    }

    void Finish(int y) const {
        const Planes row = smooth_.Row(y);
        kernels_.luminance(premultiplied_, row, Width());
        smooth_.ExtendEnds(row[3], 1);
    }

    std::size_t Channels() const { return premultiplied_ ? 4 : 3; }
    std::size_t Width() const { return static_cast<std::size_t>(image_.width()); }

    const RowKernels& kernels_ = Kernels();
    const QImage& image_;
    const ColorSteps& steps_;
    const GaussianWeights& weights_;
    int radius_;
    bool premultiplied_;
    PlaneRing loaded_;  // one row
    PlaneRing across_;  // rows blurred along themselves
    PlaneRing smooth_;  // rows blurred both ways
    int nextAcross_;
    int next_;
};

class ToonRows final : public RowSource {
  public:
    ToonRows(RowSource& source, const Cartoon& cartoon, int width, int height, int first)
        : source_(source),
          cartoon_(cartoon),
          width_(width),
          height_(height),
          ring_(4, width, 1),
          next_(first) {}

    Planes Row(int y) override {
        for (; next_ <= y; ++next_) {
            const RowsAround luminance = LuminanceAround(source_, next_, height_);
            const Planes row = ring_.Row(next_);
            Kernels().toon(luminance, cartoon_.threshold, cartoon_.quantization, source_.Row(next_),
                           row, static_cast<std::size_t>(width_));
            ring_.ExtendEnds(row[3], 1);
        }
        return ring_.Row(y);
    }

  private:
    RowSource& source_;
    const Cartoon& cartoon_;
    int width_;
    int height_;
    PlaneRing ring_;
    int next_;
};

/// The picture worked on and the one made, with what holds for all its rows.
struct Pass {
    const QImage& image;
    const EdgeEffects& effects;
    GaussianWeights weights;
    bool premultiplied;
    uchar* bits;
    qsizetype bytesPerLine;
};

void MakeBand(const Pass& pass, int first, int end) {
    const int width = pass.image.width();
    const int height = pass.image.height();
    const auto n = static_cast<std::size_t>(width);
    const EdgeEffects& effects = pass.effects;
    const RowKernels& kernels = Kernels();
    const int toonFirst = std::max(first - (effects.sketch ? 1 : 0), 0);
    SmoothRows smooth(pass.image, effects.steps, pass.weights, pass.premultiplied,
                      std::max(toonFirst - (effects.cartoon ? 1 : 0), 0));
    std::optional<ToonRows> toon;
    if (effects.cartoon) {
        toon.emplace(smooth, *effects.cartoon, width, height, toonFirst);
    }
    RowSource* source = &smooth;
    if (toon) {
        source = &*toon;
    }
    const PlaneRing paper(1, width, 0);
    for (int y = first; y < end; ++y) {
        Planes row = paper.Row(0);
        if (effects.sketch) {
            kernels.sketch(LuminanceAround(*source, y, height), effects.sketch->intensity,
                           effects.sketch->edge, row, n);
        } else {
            row = source->Row(y);
        }
        std::optional<VignetteRow> vignette;
        if (effects.vignette) {
            vignette = RowOf(*effects.vignette, y);
        }
        kernels.store(row, vignette ? &*vignette : nullptr,
                      effects.sketch ? nullptr : pass.image.constScanLine(y),
                      pass.bits + pass.bytesPerLine * y, n);
    }
}

}  // namespace

QImage ApplyEdgeEffects(const QImage& image, const EdgeEffects& effects, int threads) {
    QImage result = NewPicture(image.size(), QImage::Format_RGBA8888);
    const GaussianWeights weights(effects.cartoon ? effects.cartoon->blur : 0);
    const bool premultiplied = weights.radius() > 0 && !IsOpaque(image);
    const Pass pass = {image,         effects,       weights,
                       premultiplied, result.bits(), result.bytesPerLine()};
    ForEachRowBand(image.height(), threads,
                   [&pass](int first, int end) { MakeBand(pass, first, end); });
    return result;
}

}  // namespace lumirra
