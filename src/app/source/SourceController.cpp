#include "app/source/SourceController.h"

#include <QToolTip>
#include <cmath>

#include "app/dialogs/Dialogs.h"
#include "imaging/Words.h"
#include "imaging/files/FileName.h"
#include "project/Project.h"
#include "sources/SourceKinds.h"
#include "sources/VideoTools.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

FileDrop JudgeFiles(const QStringList& paths) {
    const Outcome<SourceChoice> choice = ChooseSource(paths);
    return choice ? FileDrop{choice->videoPath, choice->picturePaths, {}}
                  : FileDrop{{}, {}, choice.failure().message};
}

}  // namespace

SourceController::SourceController(Project& project, Dialogs& dialogs, Ui::MainWindow& ui)
    : project_(project), dialogs_(dialogs), ui_(ui) {
    ShowTimesOf({});
    ConnectSlider();
    ConnectDrops();
    connect(&project, &Project::Changed, this, &SourceController::Follow);
}

void SourceController::ConnectSlider() {
    connect(ui_.sliderVideoPosition, &SliderCellVideo::ValueEdited, this, [this](float position) {
        const bool held = ui_.sliderVideoPosition->IsDragged();
        project_.Follow(AtPosition(project_.State(), position),
                        held ? ProjectChange::Picture | ProjectChange::Held
                             : ProjectChanges(ProjectChange::Picture));
    });
    connect(ui_.sliderVideoPosition, &SliderCellVideo::Hovered, this,
            [this](double fraction, const QPoint& where) {
                const double duration = project_.State().facts.durationSeconds;
                if (duration > 0) {
                    QToolTip::showText(where, VideoTools::TimeLabel(duration * fraction));
                }
            });
    connect(ui_.sliderVideoPosition, &SliderCellVideo::Left, this, [] { QToolTip::hideText(); });
}

void SourceController::ConnectDrops() {
    connect(ui_.imageViewVideo, &VideoImageView::VideoDragPerformed, this,
            &SourceController::VideoDragPerformed);
    connect(ui_.imageViewVideo, &VideoImageView::ImageDragPerformed, this,
            &SourceController::ImageDragPerformed);
    ui_.imageViewVideo->SetVideoQuestion([this] {
        return dialogs_.Ask(
            tr("All unsaved changes will be lost. Are you sure you want to add a new video?"));
    });
    ui_.imageViewVideo->SetJudge(JudgeFiles);
}

void SourceController::SelectVideo() {
    const std::optional<QStringList> chosen =
        dialogs_.OpenFiles({tr("Open Video"), NameFilters(SourceKind::Video), false});
    if (chosen) {
        VideoDragPerformed(chosen->value(0));
    }
}

void SourceController::VideoDragPerformed(const QString& path) {
    if (path.isEmpty()) {
        dialogs_.Report(tr("The video could not be loaded."));
        return;
    }
    project_.Apply(edits::OpenVideo(project_.State(), path));
}

void SourceController::SelectImage() {
    const std::optional<QStringList> chosen =
        dialogs_.OpenFiles({tr("Open Pictures"), NameFilters(SourceKind::Still), true});
    if (chosen) {
        ImageDragPerformed(*chosen);
    }
}

void SourceController::ImageDragPerformed(const QStringList& paths) {
    if (paths.isEmpty()) {
        dialogs_.Report(tr("The image could not be loaded."));
        return;
    }
    project_.Apply(edits::OpenPictures(project_.State(), paths));
}

void SourceController::OpenFiles(const QStringList& paths) {
    if (paths.isEmpty()) {
        return;
    }
    const FileDrop files = JudgeFiles(paths);
    if (!files.videoPath.isEmpty()) {
        VideoDragPerformed(files.videoPath);
    } else if (!files.imagePaths.isEmpty()) {
        ImageDragPerformed(files.imagePaths);
    } else {
        dialogs_.Report(files.reason);
    }
}

void SourceController::Close() {
    const Document& document = project_.State();
    if (!document.source.IsEmpty() || document.facts.HasPicture()) {
        project_.Apply(edits::CloseSource(document));
    }
}

void SourceController::MarkPosition(edits::Marker marker) {
    const Document& document = project_.State();
    const float position = document.source.position;
    if (!document.facts.HasPicture()) {
        dialogs_.Report(tr("Please select a video first."));
    } else if (!MayMark(document.source, marker, position)) {
        dialogs_.Report(tr("The Start Time marker cannot be placed after the End Time marker."));
    } else {
        project_.Apply(edits::SetMarker(document, marker, position));
    }
}

void SourceController::ShowImageNumber(int number) {
    const Source& source = project_.State().source;
    if (source.HasPictures() && number >= 0 && number < source.listImagePaths.size()) {
        project_.Follow(AtPicture(project_.State(), number), ProjectChange::Picture);
    }
}

void SourceController::Step(int pictures) {
    const Document& document = project_.State();
    if (document.source.HasPictures()) {
        ShowImageNumber(document.source.currentImageNumber + pictures);
        return;
    }
    const double all = document.facts.durationSeconds * document.facts.framesPerSecond;
    if (document.source.HasVideo() && all >= 1) {
        const double shown = std::floor(static_cast<double>(document.source.position) * all + 1e-3);
        ui_.sliderVideoPosition->EditValue((shown + pictures) / all);
    }
}

void SourceController::GoToPlaceOf(const Frame& frame) {
    const Document& document = project_.State();
    const Source& source = document.source;
    if (!frame.origin) {
        dialogs_.Report(tr("It is not known where this frame came from."));
        return;
    }
    const FrameOrigin& origin = *frame.origin;
    const auto number = static_cast<int>(source.listImagePaths.indexOf(origin.path));
    if (origin.video && source.videoPath == origin.path) {
        project_.Follow(AtPosition(document, static_cast<float>(origin.position)),
                        ProjectChange::Picture);
    } else if (!origin.video && source.HasPictures() && number >= 0) {
        ShowImageNumber(number);
    } else {
        const QString name = origin.path.section(QLatin1Char('/'), -1);
        dialogs_.Report(
            tr("This frame came from “%1”, which is not open.").arg(ReadableName(name)));
    }
}

void SourceController::Follow(ProjectChanges what) {
    const Source& source = project_.State().source;
    if (what & (ProjectChange::Position | ProjectChange::Source)) {
        ui_.sliderVideoPosition->setValue(source.position);
    }
    if (what & ProjectChange::Source) {
        ShowMarkers();
        ui_.labelImageNumber->setText(source.HasPictures() ? Filled(QStringLiteral("%1/%2"),
                                                                    source.currentImageNumber + 1,
                                                                    source.listImagePaths.size())
                                                           : QString());
    }
}

void SourceController::ShowMarkers() {
    const Source& source = project_.State().source;
    ui_.sliderVideoPosition->SetStartMark(source.startPosition);
    ui_.sliderVideoPosition->SetEndMark(source.endPosition);
    if (!source.HasVideo()) {
        // The times of a video that was open stay, without its markers.
        ShowTimesOf(labelledPath_);
        return;
    }
    labelledPath_ = source.videoPath;
    ui_.labelStartTime->setText(TimeAt(source.startPosition));
    ui_.labelEndTime->setText(TimeAt(source.endPosition));
}

/// By what is known of the video already, also while its picture is late.
QString SourceController::TimeAt(float position) const {
    const Document& document = project_.State();
    const double duration = document.facts.durationSeconds;
    return duration > 0 ? VideoTools::TimeLabel(duration * static_cast<double>(position))
                        : VideoTools::TimeLabelAtPosition(document.source.videoPath,
                                                          static_cast<double>(position));
}

void SourceController::ShowTimesOf(const QString& path) {
    labelledPath_ = path;
    const QString start = VideoTools::TimeLabelAtPosition(path, 0.0);
    ui_.labelStartTime->setText(start);
    ui_.labelVideoPositionTime->setText(start);
    ui_.labelEndTime->setText(VideoTools::TimeLabelAtPosition(path, 1.0));
}

}  // namespace lumirra
