#include "output/AnimationWriter.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

#include "imaging/files/FileName.h"
#include "output/AnimationEstimate.h"
#include "output/frames/EncoderSetup.h"
#include "output/frames/FrameFeed.h"
#include "output/size/SizeLimitSearch.h"
#include "output/size/TooLarge.h"

namespace lumirra {

namespace {

Failure Stopped(const QString& path) {
    return {Failure::Kind::Stopped,
            QStringLiteral("Writing \"%1\" was stopped.").arg(ReadableName(path)), path};
}

/// A file of the request that is complete but for taking its place.
struct Draft {
    std::optional<FileReplacement> file;
    AnimationResult result;
    std::vector<long long> bytesUpTo;  ///< each picture, it included
};

/// Makes drafts of one request, one after the other.
class Drafter {
  public:
    Drafter(const AnimationEncoder& encoder, const AnimationRequest& request, const CanvasFit& fit,
            const std::stop_token& stop, const std::function<void(int, int)>& onProgress)
        : encoder_(encoder), request_(request), fit_(fit), stop_(stop), onProgress_(onProgress) {}

    const AnimationEncoder& Encoder() const { return encoder_; }

    Outcome<Draft> Make(double quality) {
        auto begun = FileReplacement::Begin(request_.destination, request_.fileKind);
        if (!begun) {
            return begun.failure();
        }
        Draft draft{*std::move(begun), {}, {}};
        FileReplacement& file = *draft.file;
        FrameFeed feed(request_, fit_);
        AnimationPorts ports;
        ports.load = [&feed](int entry) { return feed.Load(entry); };
        ports.write = [&file](std::span<const std::uint8_t> bytes) {
            return file.Write({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        };
        ports.progress = [this](int done) { Report(done); };
        ports.pictureData = [&draft](std::size_t) {
            draft.bytesUpTo.push_back(draft.file->Size());
        };
        AnimationOptions options = OptionsFor(request_, fit_);
        options.quality = quality;
        const EncodeSummary summary = encoder_.Encode(options, ports, stop_);
        ++made_;
        if (summary.end == EncodeEnd::Stopped) {
            return Stopped(request_.destination);
        }
        if (summary.end == EncodeEnd::OutOfMemory) {
            return NoMemory(encoder_);
        }
        if (summary.end == EncodeEnd::Complete && summary.pictures == 0) {
            return NothingReadable();
        }
        if (summary.end != EncodeEnd::Complete) {
            return file.Problem();
        }
        draft.result = {.frames = summary.pictures,
                        .width = fit_.width,
                        .height = fit_.height,
                        .bytes = file.Size(),
                        .quality = quality,
                        .seconds = feed.Seconds(),
                        .leftOut = feed.TakeLeftOut()};
        return draft;
    }

    void ReportEnd() const {
        if (onProgress_) {
            onProgress_(Frames() * made_, Frames() * made_);
        }
    }

  private:
    int Frames() const { return static_cast<int>(request_.frames.size()); }

    /// The end is not reported here: the frames may be needed once more.
    void Report(int done) const {
        if (onProgress_ && done < Frames()) {
            onProgress_(made_ * Frames() + done, (made_ + 1) * Frames());
        }
    }

    const AnimationEncoder& encoder_;
    const AnimationRequest& request_;
    const CanvasFit& fit_;
    const std::stop_token& stop_;
    const std::function<void(int, int)>& onProgress_;
    int made_ = 0;
};

/// Size-limited encoding: drafts of ever better guesses of the quality, until one is as large as
/// the limit lets it be.
class SizeLimitedEncoding {
  public:
    SizeLimitedEncoding(const AnimationRequest& request, Drafter& drafter,
                        const std::stop_token& stop)
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
            return StillTooLarge({.format = drafter_.Encoder().Name(),
                                  .limit = request_.maxBytes,
                                  .width = smallest_.result.width,
                                  .bytesUpTo = smallest_.bytesUpTo,
                                  .bytes = smallest_.result.bytes});
        }
        return std::move(best_);
    }

  private:
    std::optional<double> Estimate(double quality) {
        AnimationRequest request = request_;
        request.quality = quality;
        const auto estimate = EstimateAnimation(drafter_.Encoder(), request, stop_);
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

    const AnimationRequest& request_;
    Drafter& drafter_;
    const std::stop_token& stop_;
    Draft best_;
    Draft smallest_;  ///< the last that was too large, without its file
    std::optional<Failure> problem_;
};

}  // namespace

Outcome<AnimationResult> WriteAnimation(const AnimationEncoder& encoder,
                                        const AnimationRequest& request,
                                        const std::stop_token& stop,
                                        const std::function<void(int, int)>& onProgress) {
    const Outcome<CanvasFit> fit = FitFor(request, encoder);
    if (!fit) {
        return fit.failure();
    }
    Drafter drafter(encoder, request, *fit, stop, onProgress);
    Outcome<Draft> made = request.maxBytes > 0 ? SizeLimitedEncoding(request, drafter, stop).Make()
                                               : drafter.Make(request.quality);
    if (!made) {
        return made.failure();
    }
    Draft draft = *std::move(made);
    if (const auto finished = draft.file->Finish(); !finished) {
        return finished.failure();
    }
    drafter.ReportEnd();
    return std::move(draft.result);
}

}  // namespace lumirra
