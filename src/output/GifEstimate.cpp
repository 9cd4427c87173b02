#include "output/GifEstimate.h"

#include <cmath>
#include <memory>
#include <numeric>

#include "output/frames/EncoderSetup.h"
#include "output/frames/FrameFeed.h"
#include "output/size/ContentMeter.h"
#include "output/size/RowSample.h"

namespace lumirra {

namespace {

/// Below so many pixels in all frames together encoding them takes no time to speak of.
constexpr long long kFewPixels = 300'000;

std::vector<int> RowsFor(const GifRequest& request, const CanvasFit& fit) {
    const long long pixels =
        static_cast<long long>(fit.width) * fit.height * request.framePaths.size();
    if (pixels > kFewPixels) {
        return SampleRows(fit.height);
    }
    std::vector<int> all(static_cast<std::size_t>(fit.height));
    std::iota(all.begin(), all.end(), 0);
    return all;
}

gif::Picture RowsOf(const gif::Picture& canvas, const std::vector<int>& rows) {
    gif::Picture part{canvas.width, static_cast<int>(rows.size()), {}};
    part.pixels.reserve(static_cast<std::size_t>(part.width) * rows.size());
    for (const int y : rows) {
        part.pixels.insert(part.pixels.end(), canvas.Row(y), canvas.Row(y) + canvas.width);
    }
    return part;
}

/// The sampled rows of frames, whose whole content is measured on the way.
class SampleFeed {
  public:
    SampleFeed(const GifRequest& request, const CanvasFit& fit, const std::vector<int>& rows)
        : feed_(request, fit), rows_(rows), meter_(rows) {}

    std::optional<gif::Picture> Load(int entry) {
        std::optional<gif::Picture> canvas = feed_.Load(entry);
        if (static_cast<int>(rows_.size()) == (canvas ? canvas->height : 0)) {
            return canvas;
        }
        if (!canvas) {
            meter_.Add(entry, nullptr);
            return std::nullopt;
        }
        const auto whole = std::make_shared<const gif::Picture>(*std::move(canvas));
        meter_.Add(entry, whole);
        return RowsOf(*whole, rows_);
    }

    double ContentRatio() const { return meter_.Ratio(); }

  private:
    FrameFeed feed_;
    const std::vector<int>& rows_;
    ContentMeter meter_;
};

}  // namespace

Outcome<GifEstimate> EstimateGif(const GifRequest& request, const std::stop_token& stop) {
    const Outcome<CanvasFit> fit = FitFor(request.framePaths, request.fitMode);
    if (!fit) {
        return fit.failure();
    }
    const std::vector<int> rows = RowsFor(request, *fit);
    const long long pixels = static_cast<long long>(fit->width) * fit->height;
    const long long samplePixels = static_cast<long long>(fit->width) * std::ssize(rows);
    SampleFeed feed(request, *fit, rows);
    double bytes = 0;
    ImageSample sample{.samplePixels = samplePixels, .pixels = pixels};
    gif::EncoderPorts ports;
    ports.load = [&feed](int entry) { return feed.Load(entry); };
    ports.write = [&bytes](std::span<const std::uint8_t> written) {
        bytes += static_cast<double>(written.size());
        return true;
    };
    ports.progress = [](int) {};
    ports.imageData = [&](std::size_t size) {
        bytes -= static_cast<double>(size);
        sample.Add(static_cast<double>(size));
    };
    gif::EncoderOptions options = OptionsFor(request, *fit);
    options.height = static_cast<int>(rows.size());
    const gif::EncodeSummary summary = gif::Encode(options, ports, stop);
    switch (summary.end) {
        case gif::EncodeEnd::OutOfMemory:
            return NoMemory();
        case gif::EncodeEnd::Done:
            break;
        default:
            return Failure{Failure::Kind::Stopped, QStringLiteral("The estimate was stopped."), {}};
    }
    if (summary.images == 0) {
        return NothingReadable();
    }
    return GifEstimate{summary.images, fit->width, fit->height,
                       std::llround(bytes + sample.WholeBytes(feed.ContentRatio()))};
}

}  // namespace lumirra
