#include "app/frames/FrameTimingController.h"

#include <QKeyEvent>
#include <cmath>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "output/AnimationRequest.h"
#include "project/Project.h"
#include "project/edits/FrameEdits.h"
#include "project/sequence/FrameSequence.h"
#include "settings/SettingsRecords.h"
#include "ui_MainWindow.h"
#include "views/gif/GifBlocks.h"

namespace lumirra {
namespace {

/// "0.1", "2", "655.35"
QString SecondsText(int hundredths) {
    return QString::number(hundredths / 100.0, 'g', 5);
}

int CommonDelay(const Project& project) {
    return DelayHundredths(OutputSettingsOf(project.Values()).delaySeconds);
}

/// A delay that a file can hold, in hundredths; absent when the text is none.
std::optional<int> DelayOf(QString text) {
    bool isNumber = false;
    const double seconds = text.replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isNumber);
    const bool holds =
        isNumber && seconds >= 0.005 && std::round(seconds * 100) <= kLongestHundredths;
    return holds ? std::optional(HundredthsOf(seconds)) : std::nullopt;
}

}  // namespace

FrameTimingController::FrameTimingController(Project& project, Dialogs& dialogs, Ui::MainWindow& ui)
    : project_(project), dialogs_(dialogs), ui_(ui) {
    ui_.scrollViewFrames->SetCaption([this](int index) { return Caption(index); });
    ui_.scrollViewFrames->SetBadge([this](int index) { return Badge(index); });
    ui_.fieldFrameDelay->installEventFilter(this);
    connect(ui_.fieldFrameDelay, &QLineEdit::editingFinished, this,
            &FrameTimingController::CommitTyping);
    connect(ui_.fieldFrameDelay, &QLineEdit::returnPressed, ui_.scrollViewFrames,
            qOverload<>(&QWidget::setFocus));
    connect(&project, &Project::Changed, this, &FrameTimingController::Follow);
}

const std::vector<qint64>& FrameTimingController::Starts() const {
    if (starts_.empty()) {
        const int usual = CommonDelay(project_);
        qint64 milliseconds = 0;
        starts_.push_back(0);
        for (const Frame& frame : project_.State().frames.Frames()) {
            milliseconds += PlayedMilliseconds(frame.delay.value_or(usual));
            starts_.push_back(milliseconds);
        }
    }
    return starts_;
}

/// The frame's number and when viewers show it.
QString FrameTimingController::Caption(int index) const {
    const qint64 start = Starts().at(static_cast<std::size_t>(index));
    return tr("%1 · %2 s")
        .arg(QString::number(index + 1),
             QString::number(static_cast<double>(start) / 1000, 'f', 2));
}

/// Its own delay.
QString FrameTimingController::Badge(int index) const {
    const std::optional<int> delay = project_.State().frames.At(index).delay;
    return delay ? tr("%1 s").arg(SecondsText(*delay)) : QString();
}

void FrameTimingController::Follow(ProjectChanges what) {
    if (what & (ProjectChange::Frames | ProjectChange::Settings)) {
        starts_.clear();
        const int frames = project_.State().frames.Count();
        ui_.labelFramesTotal->setText(
            frames == 0
                ? QString()
                : tr("%1 s in all").arg(static_cast<double>(Starts().back()) / 1000, 0, 'f', 2));
        ui_.scrollViewFrames->RefreshWords();
    }
    const bool isTyped = ui_.fieldFrameDelay->hasFocus() && ui_.fieldFrameDelay->isModified();
    if (!isTyped &&
        (what & (ProjectChange::Frames | ProjectChange::Settings | ProjectChange::Selection))) {
        ShowDelay();
    }
}

/// What the frames have in common; a hint where the field is empty.
void FrameTimingController::ShowDelay() {
    const FrameList& list = project_.State().frames;
    const QList<int> chosen = list.Chosen(1);
    bool same = true;
    for (const int index : chosen) {
        same = same && list.At(index).delay == list.At(chosen.first()).delay;
    }
    const std::optional<int> own =
        same && !chosen.isEmpty() ? list.At(chosen.first()).delay : std::nullopt;
    shownDelay_ = own ? SecondsText(*own) : QString();
    ui_.fieldFrameDelay->setText(shownDelay_);
    ui_.fieldFrameDelay->setPlaceholderText(same ? SecondsText(CommonDelay(project_))
                                                 : tr("several"));
}

void FrameTimingController::EditDelay() {
    ui_.fieldFrameDelay->setFocus(Qt::ShortcutFocusReason);
    ui_.fieldFrameDelay->selectAll();
}

void FrameTimingController::CommitTyping() {
    QLineEdit& field = *ui_.fieldFrameDelay;
    const QString typed = field.text().trimmed();
    if (!field.isModified() && typed == shownDelay_) {
        return;
    }
    const std::optional<int> delay = DelayOf(typed);
    ShowDelay();
    if (!delay && !typed.isEmpty()) {
        dialogs_.Report(
            tr("“%1” is no delay. Type the seconds, from 0.01 to 655.35, or nothing for the delay "
               "of the Output tab.")
                .arg(typed));
        return;
    }
    project_.Apply(edits::SetFrameDelay(project_.State(), delay));
}

bool FrameTimingController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress &&
        static_cast<const QKeyEvent&>(*event).key() == Qt::Key_Escape) {
        ShowDelay();  // what was typed is dropped
        ui_.scrollViewFrames->setFocus();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void FrameTimingController::ChangeSpeed() {
    const std::optional<double> factor = dialogs_.AskNumber(
        {.title = tr("Change Speed"),
         .question = tr("How many times as fast? 2 is twice the speed, 0.5 is half of it."),
         .value = 2,
         .minimum = 0.01,
         .maximum = 100,
         .decimals = 2});
    if (!factor) {
        return;
    }
    Outcome<Edit> edit = edits::ChangeSpeed(project_.State(), *factor);
    if (edit) {
        project_.Apply(*std::move(edit));
    } else {
        dialogs_.Report(edit.failure().message);
    }
}

}  // namespace lumirra
