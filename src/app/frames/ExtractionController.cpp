#include "app/frames/ExtractionController.h"

#include <algorithm>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/session/FileCommands.h"
#include "app/session/Session.h"
#include "project/FrameStore.h"
#include "project/Project.h"
#include "project/edits/FrameEdits.h"
#include "settings/SettingsRecords.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

/// Seldom enough that a list of thousands costs nothing.
constexpr qint64 kMillisecondsBetweenUpdates = 100;

/// How the run went, in a few words; the reason for a frame left out with them.
QString ResultText(const ExtractionResult& result) {
    const auto added = static_cast<int>(result.framePaths.size());
    QString text = added == 0   ? ExtractionController::tr("No frames were added")
                   : added == 1 ? ExtractionController::tr("1 frame added")
                                : ExtractionController::tr("%1 frames added").arg(added);
    if (result.stopped) {
        text = ExtractionController::tr("Cancelled: %1").arg(text);
    } else if (!result.problems.empty()) {
        text = ExtractionController::tr("%1: %2").arg(
            text, (result.endedEarly ? result.problems.back() : result.problems.front()).message);
    }
    return text;
}

/// How many frames a run would add with the source and the settings as they are.
int PlannedFrames(const Document& document) {
    const Source& source = document.source;
    if (!source.HasVideo()) {
        const auto listed = static_cast<int>(source.listImagePaths.size());
        return listed > 1 ? listed : 0;
    }
    const double duration = document.facts.durationSeconds;
    const auto plan = PlanExtraction(ExtractionSettingsOf(document.settings.values), duration,
                                     source.startPosition, source.endPosition);
    return plan && duration > 0 ? plan->Total() : 0;
}

}  // namespace

ExtractionController::ExtractionController(Project& project, Session& session, Dialogs& dialogs,
                                           Ui::MainWindow& ui)
    : project_(project),
      session_(session),
      dialogs_(dialogs),
      ui_(ui),
      status_(*ui.labelAddFramesStatus, *ui.progressAddFramesAutomatically) {
    connect(&project, &Project::Changed, this, [this](ProjectChanges what) {
        if (what & (ProjectChange::Settings | ProjectChange::Source | ProjectChange::Facts)) {
            ShowPlan();
        }
    });
}

void ExtractionController::AddFramesAutomatically() {
    if (session_.IsUpdating()) {
        return;
    }
    Q_EMIT Starting();
    if (!project_.State().facts.HasPicture()) {
        dialogs_.Report(tr("Please select a video first."));
        return;
    }
    const bool anew =
        project_.State().frames.Count() > 0 &&
        dialogs_.Ask(tr("You already have some frames in the list. Do you want to remove them "
                        "before adding the automatically generated frames?"));
    project_.BeginGroup();
    if (anew) {
        project_.Apply(edits::RemoveAllFrames(project_.State()));
    }
    Start();
}

void ExtractionController::Start() {
    const Document& document = project_.State();
    const ExtractionJob extraction{
        document.source.videoPath,     document.source.listImagePaths,
        document.source.startPosition, document.source.endPosition,
        project_.Store().Folder(),     ExtractionSettingsOf(document.settings.values)};
    settings_ = std::make_shared<const ControlValues>(document.settings.values);
    sinceTakenOver_.start();
    ui_.buttonAddFramesAutomatically->setText(tr("Please Wait..."));
    status_.Begin();
    BackgroundJob& job = session_.Job();
    const auto result = std::make_shared<ExtractionResult>();
    const bool started = job.Start(
        BackgroundJob::Kind::Extraction,
        [this, &job, extraction, result](const std::stop_token& stop) {
            *result = RunExtraction(
                extraction, stop,
                [this, &job](const ExtractedFrame& frame) {
                    job.Post([this, frame] { arrived_.append(frame); });
                },
                [this, &job](const ExtractionProgress& progress) {
                    job.Post([this, progress] { ShowProgress(progress); });
                });
        },
        [this, result] { Finish(*result); });
    if (!started) {
        result->problems.push_back(
            {Failure::Kind::Invalid, tr("No thread could be started for the work."), {}});
        Finish(*result);
    }
}

void ExtractionController::ShowProgress(const ExtractionProgress& progress) {
    status_.ShowProgress(progress.stored, progress.total, progress.percent);
    if (sinceTakenOver_.elapsed() >= kMillisecondsBetweenUpdates) {
        sinceTakenOver_.start();
        TakeOver();
    }
}

void ExtractionController::TakeOver() {
    QList<Frame> frames;
    for (const ExtractedFrame& arrived : std::as_const(arrived_)) {
        TellMissing(arrived.path);  // a claimed name was free
        frames.append(project_.Store().Adopt(
            arrived.path, arrived.size,
            std::make_shared<const FrameOrigin>(
                FrameOrigin{arrived.source, arrived.video, arrived.position, settings_})));
    }
    arrived_.clear();
    if (!frames.isEmpty()) {
        project_.Apply(edits::AppendFrames(project_.State(), frames));
    }
}

void ExtractionController::Finish(const ExtractionResult& result) {
    TakeOver();
    project_.EndGroup(tr("Add Frames"));
    ui_.buttonAddFramesAutomatically->setText(tr("Add Frames"));
    status_.End(ResultText(result));
}

void ExtractionController::ShowPlan() {
    if (session_.RunningJob() != BackgroundJob::Kind::None) {
        return;
    }
    const int frames = PlannedFrames(project_.State());
    status_.Show(frames == 0   ? QString()
                 : frames == 1 ? tr("1 frame will be added")
                               : tr("%1 frames will be added").arg(frames));
}

}  // namespace lumirra
