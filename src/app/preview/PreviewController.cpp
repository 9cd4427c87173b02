#include "app/preview/PreviewController.h"

#include <QThread>
#include <new>
#include <utility>

#include "app/session/Session.h"
#include "project/Project.h"
#include "project/edits/SettingEdits.h"
#include "settings/SettingsRecords.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

QString PathOf(const Source& source) {
    return source.HasVideo() ? source.videoPath : source.currentImagePath;
}

PreviewResult Rendered(PreviewSource& source, const PreviewRequest& request,
                       const std::stop_token& stop) {
    try {
        return source.Render(request, QThread::idealThreadCount(), stop);
    } catch (const std::bad_alloc&) {
        PreviewResult result;
        result.problem =
            Failure{Failure::Kind::TooLarge,
                    PreviewController::tr("There is not enough memory to show the picture."),
                    {}};
        return result;
    }
}

}  // namespace

PreviewController::PreviewController(Project& project, Session& session, Ui::MainWindow& ui)
    : project_(project), session_(session), ui_(ui), source_(std::make_shared<PreviewSource>()) {
    ui_.progressUpdatePreview->Stop();
    ui_.imageViewVideo->SetImage(QImage());
    connect(&project, &Project::Changed, this, &PreviewController::Follow);
    connect(&worker_, &LatestWorker::BusyChanged, this, [this] {
        session_.SetUpdating(worker_.IsBusy());
        worker_.IsBusy() ? ui_.progressUpdatePreview->Start() : ui_.progressUpdatePreview->Stop();
    });
}

PreviewController::~PreviewController() = default;

void PreviewController::Follow(ProjectChanges what) {
    const Source& source = project_.State().source;
    if (what & ProjectChange::Source) {
        const QString before = std::exchange(shownPath_, PathOf(source));
        if (source.IsEmpty()) {
            ShowNothing();
        } else if (before != shownPath_ && source.HasVideo()) {
            // Pictures of the old source that are still on their way are not shown.
            worker_.Forget();
        }
    }
    if (!source.IsEmpty() && (what & (ProjectChange::Picture | ProjectChange::Position))) {
        Request(what & ProjectChange::Held ? LatestWorker::Older::Delivered
                                           : LatestWorker::Older::Dropped);
    }
}

void PreviewController::ShowNothing() {
    worker_.Forget();
    ui_.imageViewVideo->SetProblem(QString());
    ui_.imageViewVideo->SetImage(QImage());
}

void PreviewController::Request(LatestWorker::Older older) {
    Q_EMIT Starting();
    const Document& document = project_.State();
    if (document.source.IsEmpty()) {
        return;
    }
    PreviewRequest request{document.source.videoPath, document.source.currentImagePath,
                           EffectSettingsOf(document.settings.values, document.source.position),
                           ui_.sliderVideoPosition->IsDragged()};
    if (request.held && exactAsked_) {
        older = LatestWorker::Older::Dropped;  // an exact picture can take seconds, and stops
    }
    exactAsked_ = !request.held;
    worker_.Submit(
        [this, source = source_, request = std::move(request)](const std::stop_token& stop) {
            PreviewResult result = Rendered(*source, request, stop);
            return [this, result = std::move(result)] { Show(result); };
        },
        older);
}

void PreviewController::Show(const PreviewResult& result) {
    ui_.imageViewVideo->SetProblem(result.problem ? result.problem->message : QString());
    ui_.imageViewVideo->SetImage(result.image);
    ui_.labelVideoPositionTime->setText(result.timeLabel);
    const ImageSize size{static_cast<double>(result.image.width()),
                         static_cast<double>(result.image.height())};
    project_.Follow(
        WithFacts(project_.State(), {size, result.durationSeconds, result.framesPerSecond}));
    if (!result.exact) {
        Request(LatestWorker::Older::Delivered);
    }
}

}  // namespace lumirra
