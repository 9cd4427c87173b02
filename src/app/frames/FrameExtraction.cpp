#include <algorithm>
#include <memory>

#include "app/ViewController.h"
#include "app/jobs/TimeLeft.h"
#include "settings/SettingsRecords.h"
#include "sources/Extraction.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

constexpr int kWidestStatus = 280;  ///< pixels; longer texts are cut, whole in the tooltip

/// "12 of 46 · about 3 s left"
QString ProgressText(const ExtractionProgress& progress, qint64 elapsedMilliseconds) {
    const QString counted = ViewController::tr("%1 of %2").arg(progress.stored).arg(progress.total);
    const QString left = TimeLeftText(
        elapsedMilliseconds, static_cast<double>(progress.stored) / std::max(progress.total, 1));
    return left.isEmpty() ? counted : ViewController::tr("%1 · %2").arg(counted, left);
}

/// How the run went, in a few words; the reason for a frame left out with them.
QString ResultText(const ExtractionResult& result) {
    const auto added = static_cast<int>(result.framePaths.size());
    QString text = added == 0   ? ViewController::tr("No frames were added")
                   : added == 1 ? ViewController::tr("1 frame added")
                                : ViewController::tr("%1 frames added").arg(added);
    if (!result.problems.empty()) {
        text = ViewController::tr("%1: %2").arg(text, result.problems.front().message);
    }
    return text;
}

}  // namespace

void ViewController::OnAddFramesAutomatically() {
    if (state_.updating) {
        return;
    }
    if (IsPlaying()) {
        StopPlayback();
    }
    if (!ShowsPicture()) {
        dialogs_.Report(tr("Please select a video first."));
        return;
    }
    if (state_.frames.Count() > 0 &&
        dialogs_.Ask(tr("You already have some frames in the list. Do you want to remove them "
                        "before adding the automatically generated frames?"))) {
        RemoveFrames();
    }
    DisableAllControls();
    ui_.buttonAddFramesAutomatically->setText(tr("Please Wait..."));
    ShowAddFramesStatus({});
    StartExtraction({state_.videoPath, state_.listImagePaths, state_.startPosition.value_or(0),
                     state_.endPosition.value_or(1), temporaryFolder_,
                     ExtractionSettingsOf(Values())});
}

void ViewController::StartExtraction(const ExtractionJob& extraction) {
    extractionClock_.start();
    const auto result = std::make_shared<ExtractionResult>();
    job_.Start(
        BackgroundJob::Kind::Extraction,
        [this, extraction, result](const std::stop_token& stop) {
            *result = RunExtraction(
                extraction, stop,
                [this](const QString& path) {
                    job_.Post([this, path] { state_.frames.Append(path); });
                },
                [this](const ExtractionProgress& progress) {
                    job_.Post([this, progress] { ShowExtractionProgress(progress); });
                });
        },
        [this, result] { FinishExtraction(*result); });
}

void ViewController::ShowExtractionProgress(const ExtractionProgress& progress) {
    ui_.progressAddFramesAutomatically->setValue(static_cast<int>(progress.percent));
    ShowAddFramesStatus(ProgressText(progress, extractionClock_.elapsed()));
}

void ViewController::FinishExtraction(const ExtractionResult& result) {
    RefreshControlStates();
    ui_.progressAddFramesAutomatically->setValue(0);
    RebuildFrameStrip();
    RefreshFrameSelection();
    ui_.buttonAddFramesAutomatically->setText(tr("Add Frames"));
    ShowAddFramesStatus(ResultText(result));
}

/// What an automatic run would do with the source and the settings as they are.
void ViewController::ShowExtractionPlan() {
    if (RunningJob() == BackgroundJob::Kind::Extraction) {
        return;
    }
    int frames = 0;
    if (!state_.videoPath.isEmpty()) {
        const auto plan =
            PlanExtraction(ExtractionSettingsOf(Values()), sourceDuration_,
                           state_.startPosition.value_or(0), state_.endPosition.value_or(1));
        frames = plan && sourceDuration_ > 0 ? plan->Total() : 0;
    } else if (state_.listImagePaths.size() > 1) {
        frames = static_cast<int>(state_.listImagePaths.size());
    }
    ShowAddFramesStatus(frames == 0   ? QString()
                        : frames == 1 ? tr("1 frame will be added")
                                      : tr("%1 frames will be added").arg(frames));
}

void ViewController::ShowAddFramesStatus(const QString& text) {
    QLabel& label = *ui_.labelAddFramesStatus;
    const QString shown = label.fontMetrics().elidedText(text, Qt::ElideRight, kWidestStatus);
    // Only ever wider during a run: the progress bar beside it must not tremble.
    const bool runs = RunningJob() == BackgroundJob::Kind::Extraction;
    label.setMinimumWidth(runs ? std::max(label.minimumWidth(), label.width()) : 0);
    label.setText(shown);
    label.setToolTip(shown == text ? QString() : text);
}

}  // namespace lumirra
