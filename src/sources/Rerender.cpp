#include "sources/Rerender.h"

#include <QThread>
#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "imaging/CropGeometry.h"
#include "imaging/PixelLimits.h"
#include "imaging/Render.h"
#include "sources/Extraction.h"
#include "sources/FrameFiles.h"
#include "sources/StillReader.h"
#include "sources/VideoReader.h"
#include "sources/extraction/OrderedWork.h"

namespace lumirra {
namespace {

Failure OutOfMemory() {
    return {Failure::Kind::TooLarge, QStringLiteral("There is not enough memory."), {}};
}

/// A task on its way to a frame file.
struct Item {
    int task = 0;
    SourceImage picture;  ///< of a video
    QString framePath;
    std::optional<Failure> failure;
};

struct Result {
    RerenderedFrame frame;
    std::optional<Failure> failure;
    bool ends = false;
};

class Rerendering {
  public:
    Rerendering(const RerenderJob& job, std::stop_token stop) : job_(job), stop_(std::move(stop)) {}

    std::optional<Item> Take();
    Result Work(Item item) const;

  private:
    const RerenderTask& TaskOf(int index) const {
        return job_.tasks[static_cast<std::size_t>(index)];
    }
    void ReadVideo(Item& item);
    Outcome<ImageSize> SizeFor(const RerenderTask& task, const QImage& picture) const;

    const RerenderJob& job_;
    const std::stop_token stop_;
    int next_ = 0;
    QString openPath_;  ///< of the video that was tried last
    std::optional<VideoReader> video_;
    Failure unopened_;  ///< why there is none
};

std::optional<Item> Rerendering::Take() {
    if (next_ == static_cast<int>(job_.tasks.size()) || stop_.stop_requested()) {
        return std::nullopt;
    }
    Item item{next_++, {}, {}, {}};
    try {
        if (TaskOf(item.task).video) {
            ReadVideo(item);
        }
        if (!item.failure) {
            auto path = NextFramePath(job_.directory);
            if (path) {
                item.framePath = *std::move(path);
            } else {
                item.failure = path.failure();
            }
        }
    } catch (const std::bad_alloc&) {
        item.failure = OutOfMemory();
    }
    return item;
}

void Rerendering::ReadVideo(Item& item) {
    const RerenderTask& task = TaskOf(item.task);
    if (openPath_ != task.source) {
        openPath_ = task.source;
        video_.reset();
        auto opened = VideoReader::Open(task.source);
        if (opened) {
            video_.emplace(*std::move(opened));
        } else {
            unopened_ = opened.failure();
        }
    }
    if (!video_) {
        item.failure = unopened_;
        return;
    }
    item.picture = video_->At(task.position, stop_);
    if (item.picture.image.isNull()) {
        item.failure = item.picture.problem;
    }
}

Outcome<ImageSize> Rerendering::SizeFor(const RerenderTask& task, const QImage& picture) const {
    const ExtractionSettings& settings = job_.settings;
    const bool sized = task.video && task.source == job_.sizedVideo;
    const ImageSize size =
        sized ? ImageSize{static_cast<double>(settings.width), static_cast<double>(settings.height)}
              : ImageTools::ScaledFrameSize(picture.width(), picture.height(), settings.effects,
                                            settings.resizePercent);
    if (size.width < 1 || size.height < 1) {
        return Failure{Failure::Kind::Invalid, QStringLiteral("A frame would have no area."),
                       task.source};
    }
    if (!IsFrameSize(size.width, size.height)) {
        return FrameTooLarge(size);
    }
    return size;
}

Result Rerendering::Work(Item item) const {
    const RerenderTask& task = TaskOf(item.task);
    Result result{{item.task, {}, {}}, std::move(item.failure), false};
    try {
        if (!result.failure && !task.video) {
            item.picture = ReadStill(task.source);
            if (item.picture.image.isNull()) {
                result.failure = std::move(item.picture.problem);
            }
        }
        const QImage picture = std::exchange(item.picture.image, {});
        if (!result.failure) {
            const auto size = SizeFor(task, picture);
            if (!size) {
                result.failure = size.failure();
            } else {
                const QImage rendered = ImageTools::RenderFrameToSize(
                    picture, job_.settings.effects, size->width, size->height);
                const auto stored = StoreFrame(rendered, item.framePath);
                result.frame = {item.task, item.framePath, rendered.size()};
                if (!stored) {
                    result.failure = stored.failure();
                }
            }
        }
    } catch (const std::bad_alloc&) {
        result.failure = OutOfMemory();
        result.ends = true;
    }
    if (result.failure) {
        RemoveFrame(item.framePath);
    }
    return result;
}

}  // namespace

RerenderResult RerenderFrames(const RerenderJob& job, const std::stop_token& stop,
                              const std::function<void(const RerenderedFrame&)>& onFrame,
                              const std::function<void(int done)>& onProgress) {
    RerenderResult result;
    Rerendering work(job, stop);
    int done = 0;
    const int threads = job.threads > 0 ? job.threads : QThread::idealThreadCount();
    const auto deliver = [&](Result one) {
        if (stop.stop_requested()) {
            RemoveFrame(one.frame.path);
            return false;
        }
        if (one.failure) {
            result.problems.push_back(*std::move(one.failure));
        } else {
            onFrame(one.frame);
        }
        onProgress(++done);
        return !one.ends;
    };
    try {
        OrderedWork<Item, Result>(std::min(threads, static_cast<int>(job.tasks.size())))
            .Run([&] { return work.Take(); }, [&](Item item) { return work.Work(std::move(item)); },
                 deliver, [](const Result& one) { RemoveFrame(one.frame.path); });
    } catch (const std::bad_alloc&) {
        result.problems.push_back(OutOfMemory());
    }
    result.stopped = stop.stop_requested() && done < static_cast<int>(job.tasks.size());
    return result;
}

}  // namespace lumirra
