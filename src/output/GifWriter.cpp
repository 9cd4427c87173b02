#include "output/GifWriter.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <span>

#include "output/frames/CanvasFit.h"
#include "output/frames/FrameFile.h"
#include "output/gif/Encoder.h"

namespace lumirra {

namespace {

constexpr int kLargestField = 65535;

int DelayHundredths(double seconds) {
    const double hundredths = std::round(seconds * 100);
    return hundredths >= 1 ? static_cast<int>(std::min<double>(hundredths, kLargestField)) : 1;
}

std::optional<std::uint16_t> LoopField(double loopCount) {
    if (!(loopCount > 0)) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(std::clamp<double>(std::round(loopCount), 1, kLargestField));
}

Failure NotWritable(const QSaveFile& file) {
    return {Failure::Kind::NotWritable,
            QStringLiteral("Could not write \"%1\": %2.").arg(file.fileName(), file.errorString()),
            file.fileName()};
}

Failure Stopped(const QString& path) {
    return {Failure::Kind::Stopped, QStringLiteral("Writing \"%1\" was stopped.").arg(path), path};
}

Failure NoMemory(const QString& path) {
    return {Failure::Kind::TooLarge,
            QStringLiteral("There is not enough memory to write \"%1\".").arg(path), path};
}

/// Loads frames for the encoder's threads and remembers which could not be read.
class FrameFeed {
  public:
    FrameFeed(const GifRequest& request, const CanvasFit& fit) : request_(request), fit_(fit) {}

    std::optional<gif::Picture> Load(int entry) {
        const Outcome<QImage> frame = ReadFrame(request_.framePaths.at(entry));
        if (!frame) {
            const std::scoped_lock lock(mutex_);
            leftOut_.emplace_back(entry, frame.failure());
            return std::nullopt;
        }
        return PlaceOnCanvas(*frame, fit_, request_.colorLevels);
    }

    std::vector<Failure> TakeLeftOut() {
        std::sort(leftOut_.begin(), leftOut_.end(),
                  [](const auto& a, const auto& b) { return a.first < b.first; });
        std::vector<Failure> failures;
        failures.reserve(leftOut_.size());
        for (auto& [entry, failure] : leftOut_) {
            failures.push_back(std::move(failure));
        }
        return failures;
    }

  private:
    const GifRequest& request_;
    const CanvasFit& fit_;
    std::mutex mutex_;
    std::vector<std::pair<int, Failure>> leftOut_;
};

gif::EncoderOptions OptionsFor(const GifRequest& request, const CanvasFit& fit) {
    gif::EncoderOptions options;
    options.width = fit.width;
    options.height = fit.height;
    options.entries = static_cast<int>(request.framePaths.size());
    options.delayHundredths = DelayHundredths(request.delaySeconds);
    options.loops = LoopField(request.loopCount);
    options.quality = request.quality;
    options.threads = request.threads;
    return options;
}

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
    QSaveFile file(request.destination);
    if (!file.open(QIODevice::WriteOnly)) {
        return NotWritable(file);
    }
    FrameFeed feed(request, *fit);
    gif::EncoderPorts ports;
    ports.load = [&feed](int entry) { return feed.Load(entry); };
    ports.write = [&file](std::span<const std::uint8_t> bytes) {
        const auto size = static_cast<qint64>(bytes.size());
        return file.write(reinterpret_cast<const char*>(bytes.data()), size) == size;
    };
    const auto total = static_cast<int>(request.framePaths.size());
    ports.progress = [&](int done) {
        if (onProgress) {
            onProgress(done, total);
        }
    };
    const gif::EncodeSummary summary = gif::Encode(OptionsFor(request, *fit), ports, stop);
    if (summary.end == gif::EncodeEnd::Stopped) {
        return Stopped(request.destination);
    }
    if (summary.end == gif::EncodeEnd::OutOfMemory) {
        return NoMemory(request.destination);
    }
    if (summary.end == gif::EncodeEnd::Done && summary.images == 0) {
        return Failure{
            Failure::Kind::Unreadable, QStringLiteral("None of the frames can be read."), {}};
    }
    const qint64 bytes = file.size();
    if (summary.end != gif::EncodeEnd::Done || !file.commit()) {
        return NotWritable(file);
    }
    return GifResult{summary.images, fit->width, fit->height, bytes, feed.TakeLeftOut()};
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
