#include "sources/Extraction.h"

#include <QThread>
#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "imaging/Render.h"
#include "sources/FrameFiles.h"
#include "sources/StillReader.h"
#include "sources/VideoReader.h"
#include "sources/extraction/OrderedWork.h"

namespace lumirra {
namespace {

/// One picture on its way to a frame file whose name is already claimed.
struct Picture {
    SourceImage source;  ///< of a video
    QString imagePath;   ///< of an image list
    QString framePath;   ///< empty when no name could be had
    std::optional<Failure> failure;
};

enum class Fate { Stored, LeftOut, EndsRun };

struct Frame {
    Fate fate = Fate::LeftOut;
    QString path;
    std::optional<Failure> problem;
};

/// What the forward pass of a circular run leaves to the way back.
struct Shown {
    QString path;  ///< empty when the picture was left out
    std::optional<Failure> problem;
};

Failure OutOfMemory() {
    return {Failure::Kind::TooLarge,
            QStringLiteral("The run ended early: there is not enough memory."),
            {}};
}

class Run {
  public:
    Run(const ExtractionJob& job, const std::stop_token& stop,
        const std::function<void(const QString&)>& onFrame,
        const std::function<void(const ExtractionProgress&)>& onProgress)
        : job_(job), stop_(stop), onFrame_(onFrame), onProgress_(onProgress) {}

    ExtractionResult Go() {
        if (job_.videoPath.isEmpty()) {
            RunImages();
        } else {
            RunVideo();
        }
        return std::move(result_);
    }

  private:
    void RunImages();
    void RunVideo();
    void RunBack(const ExtractionPlan& plan);
    template <typename Source, typename Work, typename Percent>
    void RunPictures(int count, int total, const Source& source, const Work& work,
                     const Percent& percent);

    Picture WithName(Picture picture) const;
    Frame Stored(const Picture& picture, const QImage& rendered) const;
    bool Accept(Frame frame);
    void Report(int total, double percent);

    const ExtractionJob& job_;
    const std::stop_token stop_;
    const std::function<void(const QString&)>& onFrame_;
    const std::function<void(const ExtractionProgress&)>& onProgress_;
    ExtractionResult result_;
    int dealtWith_ = 0;
    bool ended_ = false;
    std::vector<Shown> forward_;  ///< of a circular run
};

Picture Run::WithName(Picture picture) const {
    auto path = NextFramePath(job_.directory);
    if (path) {
        picture.framePath = *std::move(path);
    } else {
        picture.failure = path.failure();
    }
    return picture;
}

/// The frame of a rendered picture, or what becomes of one that has no area or cannot be written.
Frame Run::Stored(const Picture& picture, const QImage& rendered) const {
    if (rendered.isNull()) {
        RemoveFrame(picture.framePath);
        const Failure noArea{Failure::Kind::Invalid,
                             QStringLiteral("The run ended early: a frame would have no area."),
                             {}};
        return {Fate::EndsRun, {}, picture.source.problem.value_or(noArea)};
    }
    const auto stored = StoreFrame(rendered, picture.framePath);
    if (!stored) {
        return {Fate::LeftOut, {}, stored.failure()};
    }
    return {Fate::Stored, picture.framePath, picture.source.problem};
}

/// Takes a frame into the result; false when the run ends with it.
bool Run::Accept(Frame frame) {
    if (frame.problem) {
        result_.problems.push_back(*std::move(frame.problem));
    }
    if (frame.fate == Fate::Stored) {
        result_.framePaths.append(frame.path);
        if (onFrame_) {
            onFrame_(frame.path);
        }
    }
    ended_ = frame.fate == Fate::EndsRun;
    return !ended_;
}

void Run::Report(int total, double percent) {
    ++dealtWith_;
    if (onProgress_) {
        onProgress_({dealtWith_, total, percent});
    }
}

/// `source(i)` is called for one picture after the other; `work(picture)` renders and stores it, on
/// any thread; `percent(i)` is the progress after it.
template <typename Source, typename Work, typename Percent>
void Run::RunPictures(int count, int total, const Source& source, const Work& work,
                      const Percent& percent) {
    int next = 0;
    const auto take = [&]() -> std::optional<Picture> {
        if (next == count || stop_.stop_requested()) {
            return std::nullopt;
        }
        try {
            return WithName(source(next++));
        } catch (const std::bad_alloc&) {
            return Picture{{}, {}, {}, OutOfMemory()};
        }
    };
    const auto workOn = [&](Picture picture) -> Frame {
        const QString path = picture.framePath;
        try {
            return picture.failure ? Frame{Fate::EndsRun, {}, std::move(picture.failure)}
                                   : work(std::move(picture));
        } catch (const std::bad_alloc&) {
            RemoveFrame(path);
            return {Fate::EndsRun, {}, OutOfMemory()};
        }
    };
    const auto deliver = [&](Frame frame) {
        if (stop_.stop_requested()) {
            RemoveFrame(frame.path);
            return false;
        }
        if (total > count) {
            forward_.push_back({frame.path, frame.problem});
        }
        if (!Accept(std::move(frame))) {
            return false;
        }
        Report(total, percent(dealtWith_));
        return true;
    };
    const auto discard = [](const Frame& frame) { RemoveFrame(frame.path); };
    const int threads = job_.threads > 0 ? job_.threads : QThread::idealThreadCount();
    OrderedWork<Picture, Frame>(std::min(threads, count)).Run(take, workOn, deliver, discard);
    result_.stopped = stop_.stop_requested() && dealtWith_ < total;
    ended_ = ended_ || result_.stopped;
}

void Run::RunImages() {
    const auto count = static_cast<int>(job_.imagePaths.size());
    const auto takeImage = [&](int i) { return Picture{{}, job_.imagePaths.at(i), {}, {}}; };
    const auto work = [&](Picture picture) -> Frame {
        picture.source = ReadStill(picture.imagePath);
        if (picture.source.image.isNull()) {
            RemoveFrame(picture.framePath);
            return {Fate::LeftOut, {}, std::move(picture.source.problem)};
        }
        const QImage source = std::exchange(picture.source.image, {});
        const QImage rendered = ImageTools::RenderFrameScaled(source, job_.settings.effects,
                                                              job_.settings.resizePercent);
        return Stored(picture, rendered);
    };
    RunPictures(count, count, takeImage, work, [&](int i) {
        const long long percent = static_cast<long long>(i) * 100 / count;  // whole, as shown
        return static_cast<double>(percent);
    });
}

void Run::RunVideo() {
    auto reader = VideoReader::Open(job_.videoPath);
    if (!reader) {
        result_.problems.push_back(reader.failure());
        return;
    }
    VideoReader video = *std::move(reader);
    const auto plan = PlanExtraction(job_.settings, video.Info().durationSeconds,
                                     job_.startPosition, job_.endPosition);
    if (!plan) {
        result_.problems.push_back(plan.failure());
        return;
    }
    const auto takeFrame = [&](int i) {
        return Picture{video.At(plan->PositionOf(i)), {}, {}, {}};
    };
    const auto work = [&](Picture picture) {
        const QImage source = std::exchange(picture.source.image, {});
        const QImage rendered = ImageTools::RenderFrameToSize(
            source, job_.settings.effects, job_.settings.width, job_.settings.height);
        return Stored(picture, rendered);
    };
    RunPictures(plan->count, plan->Total(), takeFrame, work,
                [&](int i) { return plan->PercentAfter(i); });
    if (plan->circular && !ended_) {
        RunBack(*plan);
    }
}

/// The way back shows the pictures of the way there, so their files are copied: the same bytes as
/// rendering them again would give.
void Run::RunBack(const ExtractionPlan& plan) {
    for (int i = plan.count; i < plan.Total(); ++i) {
        if (stop_.stop_requested()) {
            result_.stopped = true;
            return;
        }
        const Shown& there = forward_.at(static_cast<std::size_t>(plan.FrameOf(i)));
        if (!there.path.isEmpty()) {
            const Picture back = WithName({});
            Frame frame{Fate::EndsRun, {}, back.failure};
            if (!back.failure) {
                const auto copied = CopyFrame(there.path, back.framePath);
                frame = copied ? Frame{Fate::Stored, back.framePath, there.problem}
                               : Frame{Fate::LeftOut, {}, copied.failure()};
            }
            if (!Accept(std::move(frame))) {
                return;
            }
        }
        Report(plan.Total(), plan.PercentAfter(i));
    }
}

}  // namespace

ExtractionResult RunExtraction(const ExtractionJob& job, const std::stop_token& stop,
                               const std::function<void(const QString&)>& onFrame,
                               const std::function<void(const ExtractionProgress&)>& onProgress) {
    return Run(job, stop, onFrame, onProgress).Go();
}

}  // namespace lumirra
