#include "app/ViewController.h"
#include "app/actions/CommandActions.h"
#include "app/controls/SettingsController.h"
#include "app/frames/FrameListController.h"
#include "app/frames/FrameThinningController.h"
#include "app/frames/FrameTimingController.h"
#include "app/frames/LoopController.h"
#include "app/frames/RefreshController.h"
#include "app/frames/ShownFrameController.h"
#include "app/gif/GifController.h"
#include "app/gif/PresetController.h"
#include "app/gif/ShareController.h"
#include "app/recovery/RecoveryController.h"
#include "app/source/SourceController.h"
#include "ui_MainWindow.h"

namespace lumirra {

void ViewController::BindProjectCommands() {
    actions_->SetBeforeEach([this] {
        settings_->CommitTyping();
        timing_->CommitTyping();
    });
    actions_->Bind(Command::New, [this] { OnFileNew(); });
    actions_->Bind(Command::Quit, [this] { OnAppQuit(); });
    actions_->Bind(Command::LoadProfile, [this] { OnLoadProfile(); });
    actions_->Bind(Command::SaveProfile, [this] { OnSaveProfile(); });
    actions_->Bind(Command::SaveProfileAs, [this] { OnSaveProfileAs(); });
    actions_->Bind(Command::Undo, [this] { frames_->Undo(); });
    actions_->Bind(Command::Redo, [this] { frames_->Redo(); });
    actions_->Bind(Command::HowToVideo, [this] { OnHowToMakeAGifFromAVideo(); });
    actions_->Bind(Command::HowToImages, [this] { OnHowTocreateAGifFromImages(); });
    actions_->Bind(Command::KeyboardShortcuts, [this] { ShowShortcuts(*this); });
    actions_->Bind(Command::About, [this] { ShowAbout(*this); });
}

void ViewController::BindSourceCommands() {
    actions_->Bind(Command::SelectVideo, [this] { OnSelectVideo(); });
    actions_->Bind(Command::SelectImage, [this] { OnSelectImage(); });
    actions_->Bind(Command::ReopenSession, [this] { recovery_->ReopenLast(); });
    actions_->Bind(Command::PlayVideo, [this] { OnPlayVideo(); });
    actions_->Bind(Command::CloseVideo, [this] { OnStopVideo(); });
    actions_->Bind(Command::MarkAsStartTime, [this] { OnMarkAsStartTime(); });
    actions_->Bind(Command::MarkAsEndTime, [this] { OnMarkAsEndTime(); });
    actions_->Bind(Command::PreviousImage, [this] { OnPreviousImage(); });
    actions_->Bind(Command::NextImage, [this] { OnNextImage(); });
    actions_->Bind(Command::StepBack, [this] { source_->Step(-1); });
    actions_->Bind(Command::StepForward, [this] { source_->Step(1); });
    actions_->Bind(Command::ZoomIn, [this] { ui_.customViewVideo->ZoomIn(); });
    actions_->Bind(Command::ZoomOut, [this] { ui_.customViewVideo->ZoomOut(); });
    actions_->Bind(Command::ResetZoom, [this] { ui_.customViewVideo->ResetZoom(); });
}

void ViewController::BindFrameCommands() {
    actions_->Bind(Command::AddFrame, [this] { OnAddFrame(); });
    actions_->Bind(Command::AddFramesAutomatically, [this] { OnAddFramesAutomatically(); });
    actions_->Bind(Command::RemoveSelectedFrame, [this] { OnRemoveSelectedFrame(); });
    actions_->Bind(Command::FindLoop, [this] { loop_->FindLoop(); });
    actions_->Bind(Command::CrossFadeEnds, [this] { loop_->CrossFadeEnds(); });
    actions_->Bind(Command::RefreshFrames, [this] { refresh_->Refresh(); });
    actions_->Bind(Command::CancelJob, [this] { session_.Job().Cancel(); });
    actions_->Bind(Command::RemoveAllFrames, [this] { OnRemoveAllFrames(); });
    actions_->Bind(Command::MoveUp, [this] { OnMoveUp(); });
    actions_->Bind(Command::MoveDown, [this] { OnMoveDown(); });
    actions_->Bind(Command::MoveFramesUp, [this] { frames_->MoveSelectedUp(); });
    actions_->Bind(Command::MoveFramesDown, [this] { frames_->MoveSelectedDown(); });
    actions_->Bind(Command::CutFrames, [this] { frames_->Cut(); });
    actions_->Bind(Command::CopyFrames, [this] { frames_->Copy(); });
    actions_->Bind(Command::PasteFrames, [this] { frames_->Paste(); });
    actions_->Bind(Command::FrameDelay, [this] { timing_->EditDelay(); });
    actions_->Bind(Command::ChangeSpeed, [this] { timing_->ChangeSpeed(); });
    actions_->Bind(Command::KeepEveryNth, [this] { thinning_->KeepEveryNth(); });
    actions_->Bind(Command::RemoveNearDuplicates, [this] { thinning_->RemoveNearDuplicates(); });
    actions_->Bind(Command::ShowFrame, [this] {
        StopPlayback();
        shownFrame_->ShowOrHide();
    });
    actions_->Bind(Command::GoToSource, [this] { GoToSource(); });
    actions_->Bind(Command::SelectAllFrames, [this] { frames_->SelectAll(); });
    actions_->Bind(Command::DuplicateFrames, [this] { frames_->Duplicate(); });
    actions_->Bind(Command::ReverseFrames, [this] { frames_->Reverse(); });
    actions_->Bind(Command::ForthAndBack, [this] { frames_->ForthAndBack(); });
}

void ViewController::BindGifCommands() {
    actions_->Bind(Command::GeneratePreview, [this] { OnGeneratePreview(); });
    actions_->Bind(Command::PlayStopPreview, [this] { OnPlayStopPreview(); });
    actions_->Bind(Command::PlayAgain, [this] { gif_->PlayAgain(); });
    actions_->Bind(Command::SaveGif, [this] { OnSaveGif(); });
    actions_->Bind(Command::CopyGif, [this] { share_->Copy(); });
    actions_->Bind(Command::UseOfferedWidth, [this] { preset_->UseOfferedWidth(); });
    for (const Command command : {Command::CopyGif, Command::SaveGif, Command::PlayStopPreview,
                                  Command::PlayAgain, Command::GeneratePreview}) {
        ui_.gifPreview->addAction(&actions_->Of(command));
    }
    ui_.gifPreview->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void ViewController::BindResets() {
    const struct {
        Command command;
        ResetGroup group;
    } rows[] = {{Command::AdjustSettingsReset, ResetGroup::Adjust},
                {Command::CartoonReset, ResetGroup::Cartoon},
                {Command::SketchReset, ResetGroup::Sketch},
                {Command::VignetteReset, ResetGroup::Vignette},
                {Command::TextReset, ResetGroup::Text},
                {Command::CropResizeReset, ResetGroup::CropResize},
                {Command::OutputReset, ResetGroup::Output}};
    for (const auto& row : rows) {
        actions_->Bind(row.command, [this, group = row.group] { settings_->Reset(group); });
    }
}

}  // namespace lumirra
