#pragma once

#include <array>
#include <span>

namespace lumirra {

/// What a person can ask of the window, by menu, button or key.
enum class Command {
    New,
    SelectVideo,
    SelectImage,
    ReopenSession,
    LoadProfile,
    SaveProfile,
    SaveProfileAs,
    SaveGif,
    Quit,
    Undo,
    Redo,
    PlayVideo,
    CloseVideo,
    PreviousImage,
    NextImage,
    ZoomIn,
    ZoomOut,
    ResetZoom,
    MarkAsStartTime,
    MarkAsEndTime,
    StepBack,
    StepForward,
    AddFrame,
    AddFramesAutomatically,
    RemoveSelectedFrame,
    RemoveAllFrames,
    MoveUp,
    MoveDown,
    MoveFramesUp,
    MoveFramesDown,
    CutFrames,
    CopyFrames,
    PasteFrames,
    SelectAllFrames,
    DuplicateFrames,
    ReverseFrames,
    ForthAndBack,
    FrameDelay,
    ChangeSpeed,
    KeepEveryNth,
    RemoveNearDuplicates,
    FindLoop,
    CrossFadeEnds,
    RefreshFrames,
    ShowFrame,
    GoToSource,
    CancelJob,
    GeneratePreview,
    PlayStopPreview,
    PlayAgain,
    CopyGif,
    UseOfferedWidth,
    AdjustSettingsReset,
    CartoonReset,
    SketchReset,
    VignetteReset,
    TextReset,
    CropResizeReset,
    OutputReset,
    HowToVideo,
    HowToImages,
    KeyboardShortcuts,
    About,
};
inline constexpr int kCommandCount = static_cast<int>(Command::About) + 1;

/// One row of the table that menus, buttons and keys follow from.
struct CommandRow {
    Command command;
    const char* action;  ///< the menu entry's name in the interface file; nullptr: in no menu
    const char* button;  ///< the outlet name of its button; nullptr: none
};

/// All rows, in the order of `Command`.
std::span<const CommandRow, kCommandCount> CommandTable();

}  // namespace lumirra
