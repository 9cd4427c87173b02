#include "output/AnimationEstimate.h"

#include <cmath>
#include <memory>
#include <numeric>

#include "output/frames/EncoderSetup.h"
#include "output/frames/FrameFeed.h"
#include "output/size/ComplexityMeter.h"
#include "output/size/RowSample.h"

namespace lumirra {

namespace {

/// Below so many pixels in all frames together encoding them takes no time to speak of.
constexpr long long kFewPixels = 300'000;

std::vector<int> RowsFor(const AnimationRequest& request, const CanvasFit& fit) {
    const long long pixels = static_cast<long long>(fit.width) * fit.height *
                             static_cast<long long>(request.frames.size());
    if (pixels > kFewPixels) {
        return SampleRows(fit.height);
    }
    std::vector<int> all(static_cast<std::size_t>(fit.height));
    std::iota(all.begin(), all.end(), 0);
    return all;
}

Canvas RowsOf(const Canvas& canvas, const std::vector<int>& rows) {
    Canvas part{canvas.width, static_cast<int>(rows.size()), {}};
    part.pixels.reserve(static_cast<std::size_t>(part.width) * rows.size());
    for (const int y : rows) {
        part.pixels.insert(part.pixels.end(), canvas.Row(y), canvas.Row(y) + canvas.width);
    }
    return part;
}

/// The sampled rows of frames, whose whole complexity is measured on the way.
class SampleFeed {
  public:
    SampleFeed(const AnimationRequest& request, const CanvasFit& fit, const std::vector<int>& rows)
        : feed_(request, fit), rows_(rows), meter_(rows) {}

    std::optional<TimedCanvas> Load(int entry) {
        std::optional<TimedCanvas> loaded = feed_.Load(entry);
        if (!loaded) {
            meter_.Add(entry, nullptr);
            return std::nullopt;
        }
        if (std::ssize(rows_) == loaded->canvas.height) {
            return loaded;
        }
        const auto whole = std::make_shared<const Canvas>(std::move(loaded->canvas));
        meter_.Add(entry, whole);
        return TimedCanvas{RowsOf(*whole, rows_), loaded->delay};
    }

    double ComplexityRatio() const { return meter_.Ratio(); }

  private:
    FrameFeed feed_;
    const std::vector<int>& rows_;
    ComplexityMeter meter_;
};

}  // namespace

Outcome<AnimationEstimate> EstimateAnimation(const AnimationEncoder& encoder,
                                             const AnimationRequest& request,
                                             const std::stop_token& stop) {
    const Outcome<CanvasFit> fit = FitFor(request, encoder);
    if (!fit) {
        return fit.failure();
    }
    const std::vector<int> rows = RowsFor(request, *fit);
    RowSample sample;
    sample.whole = std::ssize(rows) == fit->height;
    sample.unchangedSample =
        encoder.UnchangedBytes(static_cast<long long>(fit->width) * std::ssize(rows));
    sample.unchangedPicture =
        encoder.UnchangedBytes(static_cast<long long>(fit->width) * fit->height);
    SampleFeed feed(request, *fit, rows);
    double bytes = 0;
    AnimationPorts ports;
    ports.load = [&feed](int entry) { return feed.Load(entry); };
    ports.write = [&bytes](std::span<const std::uint8_t> written) {
        bytes += static_cast<double>(written.size());
        return true;
    };
    ports.progress = [](int) {};
    ports.pictureData = [&](std::size_t size) {
        bytes -= static_cast<double>(size);
        sample.Add(static_cast<double>(size));
    };
    AnimationOptions options = OptionsFor(request, *fit);
    options.height = static_cast<int>(rows.size());
    const EncodeSummary summary = encoder.Encode(options, ports, stop);
    switch (summary.end) {
        case EncodeEnd::OutOfMemory:
            return NoMemory(encoder);
        case EncodeEnd::Complete:
            break;
        default:
            return Failure{Failure::Kind::Stopped, QStringLiteral("The estimate was stopped."), {}};
    }
    if (summary.pictures == 0) {
        return NothingReadable();
    }
    return AnimationEstimate{summary.pictures, fit->width, fit->height,
                             std::llround(bytes + sample.WholeBytes(feed.ComplexityRatio()))};
}

}  // namespace lumirra
