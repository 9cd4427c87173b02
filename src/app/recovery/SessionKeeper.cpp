#include "app/recovery/SessionKeeper.h"

#include <algorithm>
#include <new>
#include <utility>

#include "project/FrameStore.h"
#include "project/Project.h"

namespace lumirra {
namespace {

// Milliseconds from a change to its being written, with those that come meanwhile.
constexpr int kAfterFrames = 300;
constexpr int kAfterOthers = 2000;

Outcome<Done> Written(SessionWriter& writer, const Document& document, bool ended) {
    try {
        return writer.Write(document, ended);
    } catch (const std::bad_alloc&) {
        return Failure{
            Failure::Kind::TooLarge, SessionKeeper::tr("There is not enough memory."), {}};
    }
}

}  // namespace

SessionKeeper::SessionKeeper(Project& project)
    : project_(project),
      writer_(std::make_shared<SessionWriter>(project.Store().Folder())),
      worker_(std::make_unique<LatestWorker>()) {
    soon_.setSingleShot(true);
    connect(&soon_, &QTimer::timeout, this, &SessionKeeper::Write);
    connect(&project, &Project::Changed, this, &SessionKeeper::Follow);
}

void SessionKeeper::Follow(ProjectChanges what) {
    constexpr ProjectChanges kOthers = ProjectChange::Settings | ProjectChange::Source |
                                       ProjectChange::Position | ProjectChange::Identity;
    if (!worker_ || !(what & (ProjectChange::Frames | kOthers))) {
        return;
    }
    const int wait = what & ProjectChange::Frames ? kAfterFrames : kAfterOthers;
    soon_.start(soon_.isActive() ? std::min(wait, soon_.remainingTime()) : wait);
}

void SessionKeeper::Write() {
    worker_->Submit(
        [this, writer = writer_, document = project_.State()](const std::stop_token&) {
            const Outcome<Done> written = Written(*writer, document, false);
            const bool anyFrames = document.frames.Count() > 0;
            return [this, written, anyFrames] { Told(written, anyFrames); };
        },
        LatestWorker::Older::Delivered);
}

void SessionKeeper::Told(const Outcome<Done>& written, bool anyFrames) {
    if (!written) {
        if (!std::exchange(failed_, true)) {
            Q_EMIT Failed(written.failure().message);
        }
        return;
    }
    failed_ = false;
    if (anyFrames && !soon_.isActive() && !worker_->IsBusy()) {
        Q_EMIT Kept();
    }
}

void SessionKeeper::Stop() {
    soon_.stop();
    worker_.reset();
}

bool SessionKeeper::Finish(bool inOrder) {
    if (std::exchange(finished_, true)) {
        return false;
    }
    Stop();
    project_.ForgetHistory();
    const bool kept =
        Written(*writer_, project_.State(), inOrder) && project_.State().frames.Count() > 0;
    if (kept) {
        project_.Store().LeaveFiles();
    }
    return kept;
}

}  // namespace lumirra
