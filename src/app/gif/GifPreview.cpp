#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include "app/ViewController.h"
#include "app/gif/GifInfoText.h"
#include "app/jobs/TimeLeft.h"
#include "output/GifWriter.h"
#include "settings/SettingsRecords.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

constexpr auto kAddFramesHint =
    QT_TRANSLATE_NOOP("lumirra::ViewController", "Add frames, then Generate Preview");

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

}  // namespace

/// What a run works on and what came of it. The worker has it until the run has ended.
struct ViewController::GifRun {
    GifRequest request;
    std::optional<Outcome<GifResult>> outcome;  ///< absent: stopped before anything was written
    QElapsedTimer clock;                        ///< since the writing began
};

QString ViewController::PreviewFile() const {
    return QDir(temporaryFolder_).filePath(QStringLiteral("tempGif.gif"));
}

void ViewController::ConnectGifPreview() {
    connect(ui_.buttonGeneratePreview, &QPushButton::clicked, this,
            &ViewController::OnGeneratePreview);
    connect(ui_.buttonPlayStopPreview, &QPushButton::clicked, this,
            &ViewController::OnPlayStopPreview);
    connect(ui_.buttonSaveGif, &QPushButton::clicked, this, &ViewController::OnSaveGif);
    connect(ui_.actionSaveGif, &QAction::triggered, this, [this] {
        if (ui_.buttonSaveGif->isEnabled()) {
            OnSaveGif();
        }
    });
    connect(ui_.gifPreview, &GifView::PlayStopRequested, this, [this] {
        if (ui_.buttonPlayStopPreview->isEnabled()) {
            OnPlayStopPreview();
        }
    });
    connect(ui_.gifPreview, &GifView::InfoKnown, this, [this](const GifInfo& info) {
        ui_.labelGifInfo->setText(GifInfoText(info, leftOutFrames_));
    });
}

void ViewController::OnGeneratePreview() {
    if (IsPlaying()) {
        StopPlayback();
    }
    if (state_.frames.Count() == 0) {
        dialogs_.Report(tr("Please add at least one frame and try again."));
        return;
    }
    if (!QFileInfo(temporaryFolder_).isDir()) {
        dialogs_.Report(tr("Could not generate the preview."));
        return;
    }
    ui_.buttonGeneratePreview->setText(tr("Please Wait..."));
    EmptyGifPreview(tr("Making the GIF…"));
    DisableAllControls();

    const OutputSettings output = OutputSettingsOf(Values());
    auto run = std::make_shared<GifRun>();
    run->request = WithPreferences({.framePaths = state_.frames.Paths(),
                                    .destination = PreviewFile(),
                                    .colorLevels = output.colorLevels,
                                    .delaySeconds = output.delaySeconds,
                                    .loopCount = output.loopCount},
                                   Preferences());
    job_.Start(
        BackgroundJob::Kind::Generation,
        [this, run](const std::stop_token& stop) { GenerateGif(*run, stop); },
        [this, run] { GifGenerationFinished(*run); });
}

/// On the worker.
void ViewController::GenerateGif(GifRun& run, const std::stop_token& stop) {
    const bool differ = VideoTools::FramesHaveDifferentSizes(run.request.framePaths);
    const std::optional<bool> crop =
        job_.Ask([this, differ] { return BeginWriting(differ); }, stop);
    if (!crop) {
        return;
    }
    if (*crop) {
        run.request.fitMode = FrameFitMode::CropToSmallest;
    }
    run.clock.start();
    run.outcome = WriteGif(
        run.request, stop, Thinned([this, &run](int done, int total) {
            job_.Post([this, done, total, frames = static_cast<int>(run.request.framePaths.size()),
                       elapsed = run.clock.elapsed()] {
                ShowWritingProgress(done, total, frames, elapsed);
            });
        }));
}

/// Whether frames of different sizes are to be cropped to the smallest.
bool ViewController::BeginWriting(bool framesDiffer) {
    const bool crop =
        framesDiffer &&
        dialogs_.Ask(tr("The selected frames have different dimensions. Do you want to "
                        "automatically crop and resize all frames to match the smallest one?"));
    ui_.progressGifPreview->Start();
    ui_.progressGenerate->setValue(0);
    ui_.progressGenerate->show();
    if (Preferences().limitsSize) {
        ui_.labelGifInfo->setText(tr("Finding the quality…"));
    }
    return crop;
}

/// With a size limit the frames are written several times; nobody knows how often.
void ViewController::ShowWritingProgress(int done, int total, int frames, qint64 elapsed) {
    const int round = std::max((total - 1) / frames, 0);
    const int written = done - round * frames;
    ui_.progressGenerate->setRange(0, frames);
    ui_.progressGenerate->setValue(written);
    const QString count = round > 0 ? tr("Try %1: %2 of %3").arg(round + 1).arg(written).arg(frames)
                                    : tr("%1 of %2").arg(written).arg(frames);
    const QString left = TimeLeftText(elapsed, done / static_cast<double>(total));
    ui_.labelGifInfo->setText(left.isEmpty() ? count : tr("%1 · %2").arg(count, left));
}

void ViewController::GifGenerationFinished(const GifRun& run) {
    RefreshControlStates();
    ui_.progressGifPreview->Stop();
    ui_.progressGenerate->hide();
    ui_.labelGifInfo->clear();
    ui_.buttonGeneratePreview->setText(tr("Generate Preview"));
    const bool stopped =
        !run.outcome || (!*run.outcome && run.outcome->failure().kind == Failure::Kind::Stopped);
    if (stopped) {
        EmptyGifPreview(tr(kAddFramesHint));
        return;
    }
    const Outcome<GifResult>& outcome = *run.outcome;
    if (outcome && QFileInfo::exists(run.request.destination)) {
        leftOutFrames_ = static_cast<int>(outcome->leftOut.size());
        ui_.gifPreview->setText(tr("The GIF can no longer be read"));
        ui_.gifPreview->SetFile(run.request.destination);
        return;
    }
    // An older GIF must not pass for this one.
    QFile::remove(run.request.destination);
    EmptyGifPreview(outcome ? tr(kAddFramesHint) : outcome.failure().message);
    dialogs_.Report(tr("Could not generate the preview"));
}

/// As at the start: nothing was generated yet.
void ViewController::ClearGifPreview() {
    EmptyGifPreview(tr(kAddFramesHint));
    ui_.gifPreview->Clear();
}

void ViewController::EmptyGifPreview(const QString& words) {
    ui_.gifPreview->SetFile(QString());
    ui_.gifPreview->setText(words);
    ui_.labelGifInfo->clear();
    ShowGifPlaying(false);
}

void ViewController::ShowGifPlaying(bool playing) {
    ui_.buttonPlayStopPreview->setText(playing ? tr("Stop") : tr("Play"));
    ui_.buttonPlayStopPreview->setAccessibleName(playing ? tr("Stop the GIF") : tr("Play the GIF"));
}

void ViewController::OnPlayStopPreview() {
    if (!ui_.gifPreview->HasPictureObject()) {
        dialogs_.Report(tr("Please generate a GIF first."));
        return;
    }
    if (ui_.gifPreview->IsAnimating()) {
        ResetPlay();
        return;
    }
    if (OutputSettingsOf(Values()).loopCount > 0) {
        UpdateVideoPreview();
    }
    ui_.gifPreview->Play();
    ShowGifPlaying(true);
}

void ViewController::ResetPlay() {
    ui_.gifPreview->Stop();
    ShowGifPlaying(false);
}

}  // namespace lumirra
