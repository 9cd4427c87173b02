#include "sources/Extraction.h"

#include <QThread>
#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "imaging/CropGeometry.h"
#include "imaging/PixelLimits.h"
#include "imaging/Render.h"
#include "imaging/Words.h"
#include "sources/FrameFiles.h"
#include "sources/StillReader.h"
#include "sources/VideoReader.h"
#include "sources/extraction/OrderedWork.h"

namespace lumirra {
namespace {

/// One picture on its way to a frame file whose name is already claimed.
struct PictureTask {
    SourceImage source;  ///< of a video
    QString imagePath;   ///< of an image list
    QString framePath;   ///< empty when no name could be had
    std::optional<Failure> failure;
};

enum class Fate { Stored, LeftOut, EndsRun };

struct TaskResult {
    Fate fate = Fate::LeftOut;
    QString path;
    QSize size;
    std::optional<Failure> problem;
};

/// What the forward pass of a circular run leaves to the way back.
struct ForwardFrame {
    QString path;  ///< empty when the picture was left out
    QSize size;
    std::optional<Failure> problem;
};

Failure OutOfMemory() {
    return {Failure::Kind::TooLarge,
            QStringLiteral("The run ended early: there is not enough memory."),
            {}};
}

Failure FrameTooLargeOf(const QString& path, const ImageSize& size) {
    Failure failure = FrameTooLarge(size);
    failure.file = path;
    return failure;
}

class ExtractionRun {
  public:
    ExtractionRun(const ExtractionJob& job, const std::stop_token& stop,
                  const std::function<void(const ExtractedFrame&)>& onFrame,
                  const std::function<void(const ExtractionProgress&)>& onProgress)
        : job_(job), stop_(stop), onFrame_(onFrame), onProgress_(onProgress) {}

    ExtractionResult Go() {
        try {
            if (job_.videoPath.isEmpty()) {
                RunImages();
            } else {
                RunVideo();
            }
        } catch (const std::bad_alloc&) {
            result_.problems.push_back(OutOfMemory());
            result_.endedEarly = true;
        }
        return std::move(result_);
    }

  private:
    void RunImages();
    void RunVideo();
    bool FramesFit();
    bool Refuse(Failure why);
    void RunBack(const ExtractionPlan& plan);
    template <typename Source, typename Work, typename Percent>
    void RunPictures(int count, int total, const Source& source, const Work& work,
                     const Percent& percent);

    PictureTask WithName(PictureTask picture) const;
    TaskResult Stored(const PictureTask& picture, const QImage& rendered) const;
    ExtractedFrame Extracted(const TaskResult& frame) const;
    bool Accept(TaskResult frame);
    void Report(int total, double percent);

    const ExtractionJob& job_;
    const std::stop_token stop_;
    const std::function<void(const ExtractedFrame&)>& onFrame_;
    const std::function<void(const ExtractionProgress&)>& onProgress_;
    ExtractionResult result_;
    int dealtWith_ = 0;
    std::optional<ExtractionPlan> plan_;  ///< of a video
    bool ended_ = false;
    std::vector<ForwardFrame> forward_;  ///< of a circular run
};

PictureTask ExtractionRun::WithName(PictureTask picture) const {
    auto path = NextFramePath(job_.directory);
    if (path) {
        picture.framePath = *std::move(path);
    } else {
        picture.failure = path.failure();
    }
    return picture;
}

/// The frame of a rendered picture, or what becomes of one that has no area or cannot be written.
TaskResult ExtractionRun::Stored(const PictureTask& picture, const QImage& rendered) const {
    if (rendered.isNull()) {
        RemoveFrame(picture.framePath);
        const Failure noArea{Failure::Kind::Invalid,
                             QStringLiteral("The run ended early: a frame would have no area."),
                             {}};
        return {Fate::EndsRun, {}, {}, picture.source.problem.value_or(noArea)};
    }
    const auto stored = StoreFrame(rendered, picture.framePath);
    if (!stored) {
        const bool noMemory = stored.failure().kind == Failure::Kind::TooLarge;
        return {noMemory ? Fate::EndsRun : Fate::LeftOut, {}, {}, stored.failure()};
    }
    return {Fate::Stored, picture.framePath, rendered.size(), picture.source.problem};
}

/// The frame with what it shows: that of the picture being dealt with.
ExtractedFrame ExtractionRun::Extracted(const TaskResult& frame) const {
    if (plan_) {
        return {frame.path, frame.size, job_.videoPath, true, plan_->PositionOf(dealtWith_)};
    }
    return {frame.path, frame.size, job_.imagePaths.value(dealtWith_)};
}

/// Takes a frame into the result; false when the run ends with it.
bool ExtractionRun::Accept(TaskResult frame) {
    if (frame.problem) {
        result_.problems.push_back(*std::move(frame.problem));
    }
    if (frame.fate == Fate::Stored) {
        result_.framePaths.append(frame.path);
        if (onFrame_) {
            onFrame_(Extracted(frame));
        }
    }
    ended_ = frame.fate == Fate::EndsRun;
    result_.endedEarly = ended_;
    return !ended_;
}

void ExtractionRun::Report(int total, double percent) {
    ++dealtWith_;
    if (onProgress_) {
        onProgress_({dealtWith_, total, percent});
    }
}

/// `source(i)` is called for one picture after the other; `work(picture)` renders and stores it, on
/// any thread; `percent(i)` is the progress after it.
template <typename Source, typename Work, typename Percent>
void ExtractionRun::RunPictures(int count, int total, const Source& source, const Work& work,
                                const Percent& percent) {
    int next = 0;
    const auto take = [&]() -> std::optional<PictureTask> {
        if (next == count || stop_.stop_requested()) {
            return std::nullopt;
        }
        try {
            return WithName(source(next++));
        } catch (const std::bad_alloc&) {
            return PictureTask{{}, {}, {}, OutOfMemory()};
        }
    };
    const auto workOn = [&](PictureTask picture) -> TaskResult {
        const QString path = picture.framePath;
        try {
            return picture.failure ? TaskResult{Fate::EndsRun, {}, {}, std::move(picture.failure)}
                                   : work(std::move(picture));
        } catch (const std::bad_alloc&) {
            RemoveFrame(path);
            return {Fate::EndsRun, {}, {}, OutOfMemory()};
        }
    };
    const auto deliver = [&](TaskResult frame) {
        if (stop_.stop_requested()) {
            RemoveFrame(frame.path);
            return false;
        }
        if (total > count) {
            forward_.push_back({frame.path, frame.size, frame.problem});
        }
        if (!Accept(std::move(frame))) {
            return false;
        }
        Report(total, percent(dealtWith_));
        return true;
    };
    const auto discard = [](const TaskResult& frame) { RemoveFrame(frame.path); };
    const int threads = job_.threads > 0 ? job_.threads : QThread::idealThreadCount();
    OrderedWork<PictureTask, TaskResult>(std::min(threads, count))
        .Run(take, workOn, deliver, discard);
    result_.stopped = stop_.stop_requested() && dealtWith_ < total;
    ended_ = ended_ || result_.stopped;
}

/// By the pictures' headers; one that cannot be read is told in its turn.
bool ExtractionRun::FramesFit() {
    for (const QString& path : job_.imagePaths) {
        const auto stored = ImageTools::PixelSize(path);
        const ImageSize size =
            stored ? ImageTools::ScaledFrameSize(stored->width, stored->height,
                                                 job_.settings.effects, job_.settings.resizePercent)
                   : ImageSize{};
        if (size.width >= 1 && size.height >= 1 && !IsFrameSize(size.width, size.height)) {
            return Refuse(FrameTooLargeOf(path, size));
        }
    }
    return true;
}

bool ExtractionRun::Refuse(Failure why) {
    result_.problems.push_back(std::move(why));
    result_.endedEarly = true;
    return false;
}

void ExtractionRun::RunImages() {
    if (!FramesFit()) {
        return;
    }
    const auto count = static_cast<int>(job_.imagePaths.size());
    const auto takeImage = [&](int i) { return PictureTask{{}, job_.imagePaths.at(i), {}, {}}; };
    const auto work = [&](PictureTask picture) -> TaskResult {
        picture.source = ReadStill(picture.imagePath);
        if (picture.source.image.isNull()) {
            RemoveFrame(picture.framePath);
            return {Fate::LeftOut, {}, {}, std::move(picture.source.problem)};
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

void ExtractionRun::RunVideo() {
    const ImageSize size{static_cast<double>(job_.settings.width),
                         static_cast<double>(job_.settings.height)};
    if (size.width >= 1 && size.height >= 1 && !IsFrameSize(size.width, size.height)) {
        Refuse(FrameTooLargeOf(job_.videoPath, size));
        return;
    }
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
    plan_ = *plan;
    const auto takeFrame = [&](int i) {
        return PictureTask{video.At(plan->PositionOf(i)), {}, {}, {}};
    };
    const auto work = [&](PictureTask picture) {
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
void ExtractionRun::RunBack(const ExtractionPlan& plan) {
    for (int i = plan.count; i < plan.Total(); ++i) {
        if (stop_.stop_requested()) {
            result_.stopped = true;
            return;
        }
        const ForwardFrame& there = forward_.at(static_cast<std::size_t>(plan.FrameOf(i)));
        if (!there.path.isEmpty()) {
            const PictureTask back = WithName({});
            TaskResult frame{Fate::EndsRun, {}, {}, back.failure};
            if (!back.failure) {
                const auto copied = CopyFrame(there.path, back.framePath);
                frame = copied ? TaskResult{Fate::Stored, back.framePath, there.size, there.problem}
                               : TaskResult{Fate::LeftOut, {}, {}, copied.failure()};
            }
            if (!Accept(std::move(frame))) {
                return;
            }
        }
        Report(plan.Total(), plan.PercentAfter(i));
    }
}

}  // namespace

Failure FrameTooLarge(const ImageSize& size) {
    return {
        Failure::Kind::TooLarge,
        Filled(QStringLiteral("The output size of %1x%2 is too large: a frame can have %3 million "
                              "pixels, and %4 on a side."),
               QString::number(size.width, 'f', 0), QString::number(size.height, 'f', 0),
               kMaxFramePixels / 1'000'000, kMaxFrameSide),
        {}};
}

ExtractionResult RunExtraction(const ExtractionJob& job, const std::stop_token& stop,
                               const std::function<void(const ExtractedFrame&)>& onFrame,
                               const std::function<void(const ExtractionProgress&)>& onProgress) {
    return ExtractionRun(job, stop, onFrame, onProgress).Go();
}

}  // namespace lumirra
