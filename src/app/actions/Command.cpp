#include "app/actions/Command.h"

namespace lumirra {
namespace {

constexpr std::array<CommandRow, kCommandCount> kTable{{
    {Command::New, "actionNew", nullptr},
    {Command::SelectVideo, "actionOpenVideo", "buttonSelectVideo"},
    {Command::SelectImage, "actionOpenPictures", "buttonSelectImage"},
    {Command::ReopenSession, "actionReopenSession", nullptr},
    {Command::LoadProfile, "actionLoadProfile", nullptr},
    {Command::SaveProfile, "actionSaveProfile", nullptr},
    {Command::SaveProfileAs, "actionSaveProfileAs", nullptr},
    {Command::SaveGif, "actionSaveGif", "buttonSaveGif"},
    {Command::Quit, "actionQuit", nullptr},
    {Command::Undo, "actionUndo", nullptr},
    {Command::Redo, "actionRedo", nullptr},
    {Command::PlayVideo, nullptr, "buttonPlayVideo"},
    {Command::CloseVideo, nullptr, "buttonCloseVideo"},
    {Command::PreviousImage, nullptr, "buttonPreviousImage"},
    {Command::NextImage, nullptr, "buttonNextImage"},
    {Command::ZoomIn, "actionZoomIn", "buttonZoomIn"},
    {Command::ZoomOut, "actionZoomOut", "buttonZoomOut"},
    {Command::ResetZoom, "actionResetZoom", "buttonResetZoom"},
    {Command::MarkAsStartTime, nullptr, "buttonMarkAsStartTime"},
    {Command::MarkAsEndTime, nullptr, "buttonMarkAsEndTime"},
    {Command::StepBack, nullptr, nullptr},
    {Command::StepForward, nullptr, nullptr},
    {Command::AddFrame, nullptr, "buttonAddFrame"},
    {Command::AddFramesAutomatically, nullptr, "buttonAddFramesAutomatically"},
    {Command::RemoveSelectedFrame, "actionRemoveFrames", "buttonRemoveSelectedFrame"},
    {Command::RemoveAllFrames, "actionRemoveAllFrames", "buttonRemoveAllFrames"},
    {Command::MoveUp, nullptr, "buttonMoveUp"},
    {Command::MoveDown, nullptr, "buttonMoveDown"},
    {Command::MoveFramesUp, "actionMoveFramesUp", nullptr},
    {Command::MoveFramesDown, "actionMoveFramesDown", nullptr},
    {Command::CutFrames, "actionCutFrames", nullptr},
    {Command::CopyFrames, "actionCopyFrames", nullptr},
    {Command::PasteFrames, "actionPasteFrames", nullptr},
    {Command::SelectAllFrames, "actionSelectAllFrames", nullptr},
    {Command::DuplicateFrames, "actionDuplicateFrames", nullptr},
    {Command::ReverseFrames, "actionReverseFrames", nullptr},
    {Command::ForthAndBack, "actionForthAndBack", nullptr},
    {Command::FrameDelay, "actionFrameDelay", nullptr},
    {Command::ChangeSpeed, "actionChangeSpeed", nullptr},
    {Command::KeepEveryNth, "actionKeepEveryNth", nullptr},
    {Command::RemoveNearDuplicates, "actionRemoveNearDuplicates", nullptr},
    {Command::FindLoop, "actionFindLoop", nullptr},
    {Command::CrossFadeEnds, "actionCrossFadeEnds", nullptr},
    {Command::RefreshFrames, "actionRefreshFrames", nullptr},
    {Command::ShowFrame, "actionShowFrame", nullptr},
    {Command::GoToSource, "actionGoToSource", nullptr},
    {Command::CancelJob, "actionCancelJob", "buttonCancelJob"},
    {Command::GeneratePreview, "actionGeneratePreview", "buttonGeneratePreview"},
    {Command::PlayStopPreview, "actionPlayStopPreview", "buttonPlayStopPreview"},
    {Command::PlayAgain, "actionPlayAgain", "buttonPlayAgain"},
    {Command::CopyGif, "actionCopyGif", nullptr},
    {Command::UseOfferedWidth, "actionUseOfferedWidth", "buttonUseOfferedWidth"},
    {Command::AdjustSettingsReset, nullptr, "buttonAdjustSettingsReset"},
    {Command::CartoonReset, nullptr, "buttonCartoonReset"},
    {Command::SketchReset, nullptr, "buttonSketchReset"},
    {Command::VignetteReset, nullptr, "buttonVignetteReset"},
    {Command::TextReset, nullptr, "buttonTextReset"},
    {Command::CropResizeReset, nullptr, "buttonCropResizeReset"},
    {Command::OutputReset, nullptr, "buttonOutputReset"},
    {Command::HowToVideo, "actionHowToVideo", nullptr},
    {Command::HowToImages, "actionHowToImages", nullptr},
    {Command::KeyboardShortcuts, "actionKeyboardShortcuts", nullptr},
    {Command::About, "actionAbout", nullptr},
}};

constexpr bool IsInOrder() {
    for (std::size_t i = 0; i < kTable.size(); ++i) {
        if (static_cast<std::size_t>(kTable[i].command) != i) {
            return false;
        }
    }
    return true;
}
static_assert(IsInOrder(), "rows stand in the order of their enumerators");

}  // namespace

std::span<const CommandRow, kCommandCount> CommandTable() {
    return kTable;
}

}  // namespace lumirra
