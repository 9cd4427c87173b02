#include "app/actions/WindowState.h"

#include <algorithm>
#include <array>

#include "app/session/Session.h"
#include "project/Project.h"

namespace lumirra {
namespace {

/// The settings that matter to a video alone.
constexpr std::array kVideoControls = {Control::RadioFixedNumberOfFrames,
                                       Control::TextFieldFixedNumberOfFrames,
                                       Control::StepperFixedNumberOfFrames,
                                       Control::RadioFixedIntervalBetweenFrames,
                                       Control::TextFieldFixedIntervalBetweenFrames,
                                       Control::StepperFixedIntervalBetweenFrames,
                                       Control::ComboPlayMode};

WidgetState Shown(bool visible, bool locked) {
    return {visible && !locked, visible};
}

}  // namespace

WindowFacts FactsOf(const Project& project, const Session& session) {
    const Document& document = project.State();
    return {.video = document.source.HasVideo(),
            .pictures = document.source.HasPictures(),
            .listedPictures = static_cast<int>(document.source.listImagePaths.size()),
            .frames = document.frames.Count(),
            .selectedFrames = static_cast<int>(document.frames.SelectedIds().size()),
            .copiedFrames = static_cast<int>(session.CopiedFrames().size()),
            .playing = session.IsPlaying(),
            .cancellable = session.RunningJob() == BackgroundJob::Kind::Extraction ||
                           session.RunningJob() == BackgroundJob::Kind::Editing,
            .locked = session.IsLocked(),
            .gif = session.HasGif(),
            .gifEnds = session.GifEnds(),
            .offersWidth = session.OffersWidth(),
            .limitsSize = project.Values().IsOn(Control::CheckMaxSize),
            .limitsWidth = project.Values().IsOn(Control::CheckMaxWidth),
            .repeatsForever = project.Values().IsOn(Control::CheckRepeatForever),
            .canUndo = project.CanUndo(),
            .canRedo = project.CanRedo(),
            .canReopen = session.CanReopen()};
}

WidgetState StateOf(Command command, const WindowFacts& facts) {
    switch (command) {
        case Command::New:
        case Command::LoadProfile:
        case Command::SaveProfile:
        case Command::SaveProfileAs:
        case Command::Quit:
        case Command::HowToVideo:
        case Command::HowToImages:
        case Command::KeyboardShortcuts:
        case Command::About:
            return {};
        case Command::Undo:
            return {facts.canUndo && !facts.locked};
        case Command::Redo:
            return {facts.canRedo && !facts.locked};
        case Command::CancelJob:
            return {facts.cancellable, facts.cancellable};
        case Command::FindLoop:
            return {(facts.video || facts.frames > 2) && !facts.locked};
        case Command::CrossFadeEnds:
            return {facts.frames > 1 && !facts.locked};
        case Command::RefreshFrames:
            return {facts.frames > 0 && !facts.locked};
        case Command::ReopenSession:
            return {facts.canReopen && !facts.locked};
        case Command::PlayVideo:
            return Shown(facts.video && !facts.playing, facts.locked);
        case Command::PreviousImage:
        case Command::NextImage:
            return Shown(facts.pictures, facts.locked);
        case Command::ZoomIn:
        case Command::ZoomOut:
        case Command::ResetZoom:
            return Shown(!facts.playing, facts.locked);
        case Command::MarkAsStartTime:
        case Command::MarkAsEndTime:
            return {facts.video && !facts.locked};
        case Command::StepBack:
        case Command::StepForward:
            return {(facts.video || facts.pictures) && !facts.locked};
        case Command::AddFramesAutomatically:
            return {(facts.video || facts.listedPictures >= 2) && !facts.locked};
        case Command::SelectAllFrames:
        case Command::FrameDelay:
        case Command::ChangeSpeed:
            return {facts.frames > 0 && !facts.locked};
        case Command::DuplicateFrames:
        case Command::CutFrames:
        case Command::CopyFrames:
        case Command::MoveFramesUp:
        case Command::MoveFramesDown:
            return {facts.selectedFrames > 0 && !facts.locked};
        case Command::PasteFrames:
            return {facts.copiedFrames > 0 && !facts.locked};
        case Command::ReverseFrames:
        case Command::KeepEveryNth:
        case Command::RemoveNearDuplicates:
            return {facts.frames > 1 && !facts.locked};
        case Command::ForthAndBack:
            return {facts.frames > 2 && !facts.locked};
        case Command::PlayAgain:
            return Shown(facts.gifEnds, facts.locked);
        case Command::UseOfferedWidth:
            return Shown(facts.offersWidth, facts.locked);
        case Command::CopyGif:
            return {facts.gif && !facts.locked};
        case Command::MoveUp:
        case Command::MoveDown:
        case Command::ShowFrame:
        case Command::GoToSource:
            return {facts.selectedFrames == 1 && !facts.locked};
        default:
            return {!facts.locked};
    }
}

bool IsEnabled(Control control, const WindowFacts& facts) {
    if (facts.locked) {
        return false;
    }
    if (std::find(kVideoControls.begin(), kVideoControls.end(), control) != kVideoControls.end()) {
        return facts.video;
    }
    switch (control) {
        case Control::TextFieldLoopCount:
        case Control::StepperLoopCount:
            return !facts.repeatsForever;
        case Control::FieldMaxSize:
            return facts.limitsSize;
        case Control::FieldMaxWidth:
            return facts.limitsWidth;
        default:
            return true;
    }
}

}  // namespace lumirra
