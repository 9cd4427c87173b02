#include "output/GifWriter.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <span>

#include "output/GifEstimate.h"
#include "output/frames/EncoderSetup.h"
#include "output/frames/FrameFeed.h"
#include "output/size/SizeSearch.h"
#include "output/size/TooLarge.h"

namespace lumirra {

namespace {

Failure NotWritable(const QSaveFile& file) {
    return {Failure::Kind::NotWritable,
            QStringLiteral("Could not write \"%1\": %2.").arg(file.fileName(), file.errorString()),
            file.fileName()};
}

Failure Stopped(const QString& path) {
    return {Failure::Kind::Stopped, QStringLiteral("Writing \"%1\" was stopped.").arg(path), path};
}

/// A file of the request that is complete but for taking its place.
struct Draft {
    std::unique_ptr<QSaveFile> file;
    GifResult result;
    std::vector<long long> bytesUpTo;  ///< each image, it included
};

/// Makes drafts of one request, one after the other.
class Drafter {
  public:
    Drafter(const GifRequest& request, const CanvasFit& fit, const std::stop_token& stop,
            const std::function<void(int, int)>& onProgress)
        : request_(request), fit_(fit), stop_(stop), onProgress_(onProgress) {}

    Outcome<Draft> Make(double quality) {
        Draft draft;
        draft.file = std::make_unique<QSaveFile>(request_.destination);
        QSaveFile& file = *draft.file;
        if (!file.open(QIODevice::WriteOnly)) {
            return NotWritable(file);
        }
        FrameFeed feed(request_, fit_);
        gif::EncoderPorts ports;
        ports.load = [&feed](int entry) { return feed.Load(entry); };
        ports.write = [&file](std::span<const std::uint8_t> bytes) {
            const auto size = static_cast<qint64>(bytes.size());
            return file.write(reinterpret_cast<const char*>(bytes.data()), size) == size;
        };
        ports.progress = [this](int done) { Report(done); };
        ports.imageData = [&draft](std::size_t) { draft.bytesUpTo.push_back(draft.file->pos()); };
        gif::EncoderOptions options = OptionsFor(request_, fit_);
        options.quality = quality;
        const gif::EncodeSummary summary = gif::Encode(options, ports, stop_);
        ++made_;
        if (summary.end == gif::EncodeEnd::Stopped) {
            return Stopped(request_.destination);
        }
        if (summary.end == gif::EncodeEnd::OutOfMemory) {
            return NoMemory();
        }
        if (summary.end == gif::EncodeEnd::Done && summary.images == 0) {
            return NothingReadable();
        }
        if (summary.end != gif::EncodeEnd::Done || !file.flush()) {
            return NotWritable(file);
        }
        draft.result = {summary.images, fit_.width, fit_.height,
                        file.size(),    quality,    feed.TakeLeftOut()};
        return draft;
    }

    void ReportEnd() const {
        if (onProgress_) {
            onProgress_(Frames() * made_, Frames() * made_);
        }
    }

  private:
    int Frames() const { return static_cast<int>(request_.framePaths.size()); }

    /// The end is not reported here: the frames may be needed once more.
    void Report(int done) const {
        if (onProgress_ && done < Frames()) {
            onProgress_(made_ * Frames() + done, (made_ + 1) * Frames());
        }
    }

    const GifRequest& request_;
    const CanvasFit& fit_;
    const std::stop_token& stop_;
    const std::function<void(int, int)>& onProgress_;
    int made_ = 0;
};

/// Drafts of ever better guesses of the quality, until one is as large as the limit lets it be.
class LimitedDraft {
  public:
    LimitedDraft(const GifRequest& request, Drafter& drafter, const std::stop_token& stop)
        : request_(request), drafter_(drafter), stop_(stop) {}

    Outcome<Draft> Make() {
        const SizeProbes probes{[this](double quality) { return Estimate(quality); },
                                [this](double quality) { return Encode(quality); }};
        const auto found = SearchQuality(std::clamp(request_.quality, 1.0, 100.0),
                                         static_cast<double>(request_.maxBytes), probes);
        if (!found) {
            return *problem_;
        }
        if (!found->fits) {
            return StillTooLarge({.limit = request_.maxBytes,
                                  .width = smallest_.result.width,
                                  .bytesUpTo = smallest_.bytesUpTo,
                                  .bytes = smallest_.result.bytes});
        }
        return std::move(best_);
    }

  private:
    std::optional<double> Estimate(double quality) {
        GifRequest request = request_;
        request.quality = quality;
        const auto estimate = EstimateGif(request, stop_);
        if (!estimate) {
            problem_ = estimate.failure();
            return std::nullopt;
        }
        return static_cast<double>(estimate->bytes);
    }

    std::optional<double> Encode(double quality) {
        Outcome<Draft> made = drafter_.Make(quality);
        if (!made) {
            problem_ = made.failure();
            return std::nullopt;
        }
        Draft draft = *std::move(made);
        const auto bytes = static_cast<double>(draft.result.bytes);
        if (draft.result.bytes > request_.maxBytes) {
            draft.file.reset();
            smallest_ = std::move(draft);
        } else if (!best_.file || quality > best_.result.quality) {
            best_ = std::move(draft);
        }
        return bytes;
    }

    const GifRequest& request_;
    Drafter& drafter_;
    const std::stop_token& stop_;
    Draft best_;
    Draft smallest_;  ///< the last that was too large, without its file
    std::optional<Failure> problem_;
};

}  // namespace

Outcome<GifResult> WriteGif(const GifRequest& request, const std::stop_token& stop,
                            const std::function<void(int, int)>& onProgress) {
    const Outcome<CanvasFit> fit = FitFor(request.framePaths, request.fitMode);
    if (!fit) {
        return fit.failure();
    }
    if (const QFileInfo target(request.destination); target.exists() && !target.isFile()) {
        // The rename at the end would put a file in place of a device or a pipe.
        return Failure{Failure::Kind::NotWritable,
                       QStringLiteral("Could not write \"%1\": it is not a regular file.")
                           .arg(request.destination),
                       request.destination};
    }
    Drafter drafter(request, *fit, stop, onProgress);
    Outcome<Draft> made = request.maxBytes > 0 ? LimitedDraft(request, drafter, stop).Make()
                                               : drafter.Make(request.quality);
    if (!made) {
        return made.failure();
    }
    Draft draft = *std::move(made);
    if (!draft.file->commit()) {
        return NotWritable(*draft.file);
    }
    drafter.ReportEnd();
    return std::move(draft.result);
}

void VideoTools::CreateGif(const QStringList& framePaths, const QString& destination,
                           int colorLevels, FrameFitMode fitMode, double delaySeconds,
                           double loopCount) {
    QFile old(destination);
    if (!old.remove()) {
        std::printf("Remove failed: %s\n", qPrintable(old.errorString()));
    }
    GifRequest request;
    request.framePaths = framePaths;
    request.destination = destination;
    request.colorLevels = colorLevels;
    request.fitMode = fitMode;
    request.delaySeconds = delaySeconds;
    request.loopCount = loopCount;
    // The file's presence is all that the caller looks at.
    static_cast<void>(WriteGif(request, {}, {}));
}

}  // namespace lumirra
