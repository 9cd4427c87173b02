#include "app/frames/RefreshController.h"

#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/session/FileCommands.h"
#include "app/session/Session.h"
#include "imaging/Words.h"
#include "project/FrameStore.h"
#include "project/Project.h"
#include "project/edits/FrameEdits.h"
#include "settings/SettingsRecords.h"
#include "sources/FrameFiles.h"
#include "ui_MainWindow.h"

namespace lumirra {

RefreshController::RefreshController(Project& project, Session& session, Dialogs& dialogs,
                                     Ui::MainWindow& ui)
    : project_(project),
      session_(session),
      dialogs_(dialogs),
      status_(*ui.labelAddFramesStatus, *ui.progressAddFramesAutomatically) {}

void RefreshController::Refresh() {
    if (session_.IsUpdating()) {
        return;  // the size of the frames is about to change
    }
    Q_EMIT Starting();
    const FrameList& list = project_.State().frames;
    QList<Frame> frames;
    const QList<int> chosen = list.Chosen(1);
    for (const int index : chosen) {
        frames.append(list.At(index));
    }
    RerenderJob job = JobOf(frames);
    if (job.tasks.empty()) {
        dialogs_.Report(tr("It is not known where these frames came from."));
        return;
    }
    Start(std::move(job));
}

RerenderJob RefreshController::JobOf(const QList<Frame>& frames) {
    const Document& document = project_.State();
    RerenderJob job;
    job.settings = ExtractionSettingsOf(document.settings.values);
    job.sizedVideo = document.facts.HasPicture() ? document.source.videoPath : QString();
    job.directory = project_.Store().Folder();
    framesOf_.clear();
    unknown_ = 0;
    QHash<std::pair<QString, double>, int> known;
    for (const Frame& frame : frames) {
        if (!frame.origin) {
            ++unknown_;
            continue;
        }
        const FrameOrigin& origin = *frame.origin;
        const std::pair key(origin.path, origin.video ? origin.position : -1);
        auto task = known.find(key);
        if (task == known.end()) {
            task = known.insert(key, static_cast<int>(job.tasks.size()));
            job.tasks.push_back({origin.path, origin.video, origin.position});
            framesOf_.append(QList<FrameId>());
        }
        framesOf_[*task].append(frame.id);
    }
    tasks_ = job.tasks;
    settings_ = std::make_shared<const ControlValues>(document.settings.values);
    return job;
}

void RefreshController::Start(RerenderJob rerender) {
    status_.Begin();
    arrived_.clear();
    BackgroundJob& job = session_.Job();
    const auto result = std::make_shared<RerenderResult>();
    const auto total = static_cast<int>(rerender.tasks.size());
    const bool started = job.Start(
        BackgroundJob::Kind::Editing,
        [this, &job, rerender = std::move(rerender), result, total](const std::stop_token& stop) {
            *result = RerenderFrames(
                rerender, stop,
                [this, &job](const RerenderedFrame& frame) {
                    job.Post([this, frame] { arrived_.append(frame); });
                },
                [this, &job, total](int done) {
                    job.Post([this, done, total] {
                        status_.ShowProgress(done, total, 100.0 * done / total);
                    });
                });
        },
        [this, result] { Finish(*result); });
    if (!started) {
        result->problems.push_back(
            {Failure::Kind::Invalid, tr("No thread could be started for the work."), {}});
        Finish(*result);
    }
}

void RefreshController::Finish(const RerenderResult& result) {
    if (result.stopped) {
        for (const RerenderedFrame& frame : std::as_const(arrived_)) {
            RemoveFrame(frame.path);
        }
        arrived_.clear();
        status_.End(tr("Cancelled: no frame was changed"));
        return;
    }
    const QHash<FrameId, Frame> rendered = TakeOver();
    project_.Apply(edits::RefreshFrames(project_.State(), rendered));
    status_.End(ResultText(result, rendered.size()));
}

QHash<FrameId, Frame> RefreshController::TakeOver() {
    QHash<FrameId, Frame> rendered;
    for (const RerenderedFrame& arrived : std::as_const(arrived_)) {
        const RerenderTask& task = tasks_[static_cast<std::size_t>(arrived.task)];
        TellMissing(arrived.path);  // a claimed name was free
        const Frame frame =
            project_.Store().Adopt(arrived.path, arrived.size,
                                   std::make_shared<const FrameOrigin>(FrameOrigin{
                                       task.source, task.video, task.position, settings_}));
        for (const FrameId id : std::as_const(framesOf_[arrived.task])) {
            rendered.insert(id, frame);
        }
    }
    arrived_.clear();
    return rendered;
}

QString RefreshController::ResultText(const RerenderResult& result, qsizetype refreshed) const {
    const QString text =
        refreshed == 1 ? tr("1 frame refreshed") : Filled(tr("%1 frames refreshed"), refreshed);
    if (!result.problems.empty()) {
        return Filled(tr("%1: %2"), text, result.problems.front().message);
    }
    return unknown_ == 0 ? text : Filled(tr("%1: the source of %2 is not known"), text, unknown_);
}

}  // namespace lumirra
