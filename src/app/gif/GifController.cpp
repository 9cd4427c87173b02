#include "app/gif/GifController.h"

#include <unistd.h>

#include <QElapsedTimer>
#include <algorithm>
#include <functional>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/gif/GifInfoText.h"
#include "app/gif/SizeEstimate.h"
#include "app/gif/StaleNote.h"
#include "app/session/FileCommands.h"
#include "app/session/Session.h"
#include "app/session/TimeLeft.h"
#include "imaging/files/FileName.h"
#include "project/ExportRequest.h"
#include "project/Project.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

constexpr auto kAddFramesHint =
    QT_TRANSLATE_NOOP("lumirra::GifController", "Add frames, then Generate Preview");

/// Often enough for a smooth bar, seldom enough to cost nothing.
constexpr qint64 kMillisecondsBetweenReports = 40;

/// Passes on only as many reports as a person can follow, and the last.
template <typename Report>
std::function<void(int, int)> Thinned(Report report) {
    return [report = std::move(report), last = QElapsedTimer()](int done, int total) mutable {
        if (done == total || !last.isValid() || last.elapsed() >= kMillisecondsBetweenReports) {
            last.start();
            report(done, total);
        }
    };
}

GifRequest RequestOf(const Document& document, const QString& destination) {
    GifRequest request = ExportRequest(document.settings.values, FramesOf(document.frames));
    request.destination = destination;
    request.fileKind = FileKind::Working;
    return request;
}

/// The size of a frame whose file has gone is not known any more.
void ForgetMissing(std::vector<FrameInput>& frames) {
    for (FrameInput& frame : frames) {
        if (!FactsOf(frame.path).isThere) {
            frame.size.reset();
        }
    }
}

}  // namespace

/// What a run works on and what came of it. The worker has it until the run has ended.
struct GifController::Run {
    GifRequest request;
    GifRequest content;                         ///< of the frames and settings as they were
    std::optional<Outcome<GifResult>> outcome;  ///< absent: stopped before anything was written
    QElapsedTimer clock;                        ///< since the writing began
};

GifController::GifController(const Project& project, Session& session, Dialogs& dialogs,
                             Ui::MainWindow& ui, QString previewFile)
    : project_(project),
      session_(session),
      dialogs_(dialogs),
      ui_(ui),
      previewFile_(std::move(previewFile)),
      sizeEstimate_(std::make_unique<SizeEstimate>(*ui.labelSizeEstimate)),
      staleNote_(std::make_unique<StaleNote>(*ui.labelGifStale)) {
    ui_.progressGifPreview->Stop();
    ShowPlaying(false);
    connect(ui_.gifPreview, &GifView::InfoKnown, this, [this](const GifInfo& info) {
        ui_.labelGifInfo->setText(GifInfoText(info, leftOutFrames_));
        ui_.labelGifRepeats->setText(GifRepeatText(info));
        session_.SetGifEnds(!ui_.labelGifRepeats->text().isEmpty());
    });
    connect(&project, &Project::Changed, this, &GifController::FollowProject);
    connect(sizeEstimate_.get(), &SizeEstimate::LimitAdvised, this, &GifController::LimitAdvised);
}

GifController::~GifController() = default;

/// Most settings are none of the GIF's.
void GifController::FollowProject(ProjectChanges what) {
    const OutputSettings output = OutputSettingsOf(project_.Values());
    if (!(what & ProjectChange::Frames) && output == output_) {
        return;
    }
    output_ = output;
    const GifRequest request = ContentRequest(RequestOf(project_.State(), {}));
    staleNote_->Follow(request);
    sizeEstimate_->Follow(request);
}

void GifController::GeneratePreview() {
    if (project_.State().frames.Count() == 0) {
        dialogs_.Report(tr("Please add at least one frame and try again."));
        return;
    }
    if (!FactsOf(FolderOf(previewFile_)).isFolder) {
        dialogs_.Report(tr("Could not generate the preview."));
        return;
    }
    ShowBusy(true);
    Empty(tr("Making the GIF…"));
    session_.SetLocked(true);
    const auto run = std::make_shared<Run>();
    run->request = RequestOf(project_.State(), previewFile_);
    run->content = ContentRequest(run->request);
    ForgetMissing(run->request.frames);
    TellIfMissing(previewFile_);
    const quint64 generation = ++generations_;
    if (VideoTools::FramesHaveDifferentSizes(SizesOf(run->request.frames)) &&
        dialogs_.Ask(tr("The selected frames have different dimensions. Do you want to "
                        "automatically crop and resize all frames to match the smallest one?"))) {
        run->request.fitMode = FrameFitMode::CropToSmallest;
    }
    if (generation == generations_) {
        Start(run);
    }
    session_.SetLocked(false);
}

void GifController::Start(const std::shared_ptr<Run>& run) {
    ui_.progressGifPreview->Start();
    ui_.progressGenerate->setValue(0);
    ui_.progressGenerate->show();
    if (run->request.maxBytes > 0) {
        ui_.labelGifInfo->setText(tr("Finding the quality…"));
    }
    run->clock.start();
    BackgroundJob& job = session_.Job();
    const auto report = [this, &job, run](int done, int total) {
        job.Post([this, done, total, frames = static_cast<int>(run->request.frames.size()),
                  elapsed = run->clock.elapsed()] {
            ShowWritingProgress(done, total, frames, elapsed);
        });
    };
    const bool started = job.Start(
        BackgroundJob::Kind::Generation,
        [run, report](const std::stop_token& stop) {
            run->outcome = WriteGif(run->request, stop, Thinned(report));
        },
        [this, run] { Finish(*run); });
    if (!started) {
        run->outcome =
            Failure{Failure::Kind::Invalid, tr("No thread could be started for the work."), {}};
        Finish(*run);
    }
}

/// With a size limit the frames are written several times; nobody knows how often.
void GifController::ShowWritingProgress(int done, int total, int frames, qint64 elapsed) {
    const int round = std::max((total - 1) / frames, 0);
    const int written = done - round * frames;
    ui_.progressGenerate->setRange(0, frames);
    ui_.progressGenerate->setValue(written);
    const QString count = round > 0 ? tr("Try %1: %2 of %3").arg(round + 1).arg(written).arg(frames)
                                    : tr("%1 of %2").arg(written).arg(frames);
    const QString left = TimeLeftText(elapsed, done / static_cast<double>(total));
    ui_.labelGifInfo->setText(left.isEmpty() ? count : tr("%1 · %2").arg(count, left));
}

void GifController::ShowBusy(bool busy) {
    ui_.buttonGeneratePreview->setText(busy ? tr("Please Wait...") : tr("Generate Preview"));
    if (!busy) {
        ui_.progressGifPreview->Stop();
        ui_.progressGenerate->hide();
        ui_.labelGifInfo->clear();
    }
}

void GifController::Finish(const Run& run) {
    ShowBusy(false);
    const bool stopped =
        !run.outcome || (!*run.outcome && run.outcome->failure().kind == Failure::Kind::Stopped);
    if (stopped) {
        Empty(tr(kAddFramesHint));
        return;
    }
    const Outcome<GifResult>& outcome = *run.outcome;
    if (outcome && FactsOf(run.request.destination).isThere) {
        leftOutFrames_ = static_cast<int>(outcome->leftOut.size());
        ui_.gifPreview->setText(tr("The GIF can no longer be read"));
        ui_.gifPreview->SetFile(run.request.destination);
        staleNote_->ShowMadeOf(run.content);
        session_.SetHasGif(true);
        return;
    }
    // An older GIF must not pass for this one.
    ::unlink(FileBytes(run.request.destination).constData());
    Empty(outcome ? tr(kAddFramesHint) : outcome.failure().message);
    dialogs_.Report(tr("Could not generate the preview"));
}

void GifController::Clear() {
    ++generations_;
    ShowBusy(false);
    Empty(tr(kAddFramesHint));
    ui_.gifPreview->Clear();
}

void GifController::Empty(const QString& words) {
    ui_.gifPreview->SetFile(QString());
    ui_.gifPreview->setText(words);
    ui_.labelGifInfo->clear();
    staleNote_->Clear();
    session_.SetHasGif(false);
    session_.SetGifEnds(false);
    ShowPlaying(false);
}

void GifController::ShowPlaying(bool playing) {
    ui_.buttonPlayStopPreview->setText(playing ? tr("Stop") : tr("Play"));
    ui_.buttonPlayStopPreview->setAccessibleName(playing ? tr("Stop the GIF") : tr("Play the GIF"));
    ui_.actionPlayStopPreview->setText(playing ? tr("Sto&p GIF") : tr("&Play GIF"));
}

void GifController::PlayStopPreview() {
    if (!ui_.gifPreview->HasPictureObject()) {
        dialogs_.Report(tr("Please generate a GIF first."));
        return;
    }
    if (ui_.gifPreview->IsAnimating()) {
        ResetPlay();
        return;
    }
    Play();
}

void GifController::PlayAgain() {
    ResetPlay();
    Play();
}

void GifController::Play() {
    if (OutputSettingsOf(project_.Values()).loopCount > 0) {
        Q_EMIT PlayingWithLoopCount();
    }
    ui_.gifPreview->Play();
    ShowPlaying(true);
}

void GifController::ResetPlay() {
    ui_.gifPreview->Stop();
    ShowPlaying(false);
}

}  // namespace lumirra
