#include "app/ViewController.h"

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <optional>

#include "app/actions/CommandActions.h"
#include "app/actions/WindowStateView.h"
#include "app/controls/SettingsController.h"
#include "app/dialogs/Dialogs.h"
#include "app/frames/CaptureController.h"
#include "app/frames/ExtractionController.h"
#include "app/frames/FrameListController.h"
#include "app/frames/FrameThinningController.h"
#include "app/frames/FrameTimingController.h"
#include "app/frames/LoopController.h"
#include "app/frames/RefreshController.h"
#include "app/frames/ShownFrameController.h"
#include "app/gif/GifController.h"
#include "app/gif/PresetController.h"
#include "app/gif/SaveController.h"
#include "app/gif/ShareController.h"
#include "app/lifecycle/LifecycleController.h"
#include "app/preview/PreviewController.h"
#include "app/profile/ProfileController.h"
#include "app/recovery/RecoveryController.h"
#include "app/recovery/SessionKeeper.h"
#include "app/session/FileCommands.h"
#include "app/source/PlaybackController.h"
#include "app/source/SourceController.h"
#include "project/edits/SettingEdits.h"
#include "ui_MainWindow.h"

namespace lumirra {

ViewController::ViewController(Theme& theme, Dialogs& dialogs, const QString& temporaryFolder,
                               const QUrl& store)
    : MainWindow(theme),
      dialogs_(dialogs),
      ui_(Controls()),
      previewFile_(QDir(temporaryFolder).filePath(QStringLiteral("tempGif.gif"))),
      store_(temporaryFolder, PrintRemoveFailed),
      project_(store_) {
    qApp->installEventFilter(this);
    DimPanelButtons();
    project_.Follow(FreshDocument());
    MakeControllers(dialogs, store);
    ConnectControllers();
    BindProjectCommands();
    BindSourceCommands();
    BindFrameCommands();
    BindGifCommands();
    BindResets();
    stateView_->Refresh();
    ShowTitle();
    ShowHistory();
    ui_.tabViewSettings->setCurrentIndex(0);
    setFocus();  // no control is singled out before Tab is pressed
}

ViewController::~ViewController() {
    StopWork();
    static_cast<void>(KeepSession(false));  // unless it was closed in order
}

void ViewController::MakeControllers(Dialogs& dialogs, const QUrl& store) {
    actions_ = std::make_unique<CommandActions>(*this);
    stateView_ = std::make_unique<WindowStateView>(*this, ui_, *actions_, project_, session_);
    settings_ = std::make_unique<SettingsController>(project_, *this);
    preview_ = std::make_unique<PreviewController>(project_, session_, ui_);
    playback_ = std::make_unique<PlaybackController>(project_, session_, dialogs, ui_);
    source_ = std::make_unique<SourceController>(project_, dialogs, ui_);
    capture_ =
        std::make_unique<CaptureController>(project_, session_, dialogs, *ui_.imageViewVideo);
    extraction_ = std::make_unique<ExtractionController>(project_, session_, dialogs, ui_);
    refresh_ = std::make_unique<RefreshController>(project_, session_, dialogs, ui_);
    loop_ = std::make_unique<LoopController>(project_, session_, dialogs, ui_);
    frames_ = std::make_unique<FrameListController>(project_, session_, dialogs, ui_);
    timing_ = std::make_unique<FrameTimingController>(project_, dialogs, ui_);
    thinning_ = std::make_unique<FrameThinningController>(project_, dialogs, *this);
    shownFrame_ = std::make_unique<ShownFrameController>(project_, session_, ui_);
    gif_ = std::make_unique<GifController>(project_, session_, dialogs, ui_, previewFile_);
    preset_ = std::make_unique<PresetController>(project_, session_, ui_, UserPresetsFile());
    save_ = std::make_unique<SaveController>(dialogs, ui_, previewFile_, store);
    share_ = std::make_unique<ShareController>(dialogs, *ui_.gifPreview, previewFile_);
    profile_ = std::make_unique<ProfileController>(project_, dialogs);
    lifecycle_ = std::make_unique<LifecycleController>(project_, dialogs);
    recovery_ =
        std::make_unique<RecoveryController>(project_, session_, dialogs, *ui_.noticeSessions);
    keeper_ = std::make_unique<SessionKeeper>(project_);
}

/// What one part's work means for another.
void ViewController::ConnectControllers() {
    connect(&project_, &Project::Changed, this, &ViewController::Follow);
    connect(preview_.get(), &PreviewController::Starting, this, &ViewController::StopPlayback);
    connect(extraction_.get(), &ExtractionController::Starting, this,
            &ViewController::StopPlayback);
    connect(refresh_.get(), &RefreshController::Starting, this, &ViewController::StopPlayback);
    connect(loop_.get(), &LoopController::Starting, this, &ViewController::StopPlayback);
    connect(gif_.get(), &GifController::PlayingWithLoopCount, this,
            &ViewController::UpdateVideoPreview);
    connect(gif_.get(), &GifController::LimitAdvised, preset_.get(),
            &PresetController::ShowLimitAdvice);
    connect(ui_.gifPreview, &GifView::PlayStopRequested, this,
            [this] { actions_->Trigger(Command::PlayStopPreview); });
    connect(ui_.scrollViewFrames, &ScrollViewFrames::FrameOpened, this,
            [this] { actions_->Trigger(Command::GoToSource); });
    connect(ui_.scrollViewFrames, &ScrollViewFrames::MenuWanted, this,
            &ViewController::ShowFrameMenu);
    connect(lifecycle_.get(), &LifecycleController::Leaving, this, &ViewController::LeaveProject);
    connect(recovery_.get(), &RecoveryController::Restoring, this, &ViewController::LeaveProject);
    connect(keeper_.get(), &SessionKeeper::Kept, recovery_.get(),
            &RecoveryController::ForgetRestored);
    connect(keeper_.get(), &SessionKeeper::Failed, recovery_.get(),
            &RecoveryController::TellFailure);
}

/// The buttons at the picture's edge step back until they are pointed at or have the keyboard.
void ViewController::DimPanelButtons() {
    for (QWidget* button :
         {ui_.buttonZoomIn, ui_.buttonZoomOut, ui_.buttonResetZoom, ui_.buttonCloseVideo,
          ui_.buttonPlayVideo, ui_.buttonPreviousImage, ui_.buttonNextImage}) {
        button->setProperty("quiet", true);
    }
}

void ViewController::ShowFrameMenu(const QPoint& where) {
    static constexpr std::optional<Command> kSeparator;
    static constexpr std::optional<Command> kEntries[] = {Command::CutFrames,
                                                          Command::CopyFrames,
                                                          Command::PasteFrames,
                                                          Command::DuplicateFrames,
                                                          Command::RemoveSelectedFrame,
                                                          Command::RemoveAllFrames,
                                                          Command::SelectAllFrames,
                                                          kSeparator,
                                                          Command::MoveFramesUp,
                                                          Command::MoveFramesDown,
                                                          Command::ReverseFrames,
                                                          Command::ForthAndBack,
                                                          kSeparator,
                                                          Command::FrameDelay,
                                                          Command::ChangeSpeed,
                                                          Command::KeepEveryNth,
                                                          Command::RemoveNearDuplicates,
                                                          Command::FindLoop,
                                                          Command::CrossFadeEnds,
                                                          Command::RefreshFrames,
                                                          kSeparator,
                                                          Command::ShowFrame,
                                                          Command::GoToSource};
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("menuFrame"));
    for (const std::optional<Command>& entry : kEntries) {
        if (entry) {
            menu->addAction(&actions_->Of(*entry));
        } else {
            menu->addSeparator();
        }
    }
    menu->popup(where);
}

void ViewController::GoToSource() {
    const FrameList& frames = project_.State().frames;
    if (frames.CanMove()) {
        source_->GoToPlaceOf(frames.At(frames.Chosen(1).first()));
    }
}

ProjectState ViewController::State() const {
    const Document& document = project_.State();
    return {.currentProfilePath = document.identity.currentProfilePath,
            .videoPath = document.source.videoPath,
            .listImagePaths = document.source.listImagePaths,
            .currentImagePath = document.source.currentImagePath,
            .currentImageNumber = document.source.currentImageNumber,
            .startPosition = document.source.startPosition,
            .endPosition = document.source.endPosition,
            .frames = document.frames,
            .textFieldsValues = document.settings.textFieldsValues,
            .updating = session_.IsUpdating(),
            .selectionChanged = preview_->IsReplaced(),
            .commandIsPressed = session_.CommandIsPressed()};
}

void ViewController::Follow(ProjectChanges what) {
    if (what & ProjectChange::Identity) {
        ShowTitle();
    }
    if (what & ProjectChange::History) {
        ShowHistory();
    }
}

void ViewController::ShowTitle() {
    const Document& document = project_.State();
    setWindowTitle(document.identity.title +
                   (document.IsModified() ? QStringLiteral("*") : QString()));
}

void ViewController::ShowHistory() {
    actions_->Of(Command::Undo).setText(tr("&Undo %1").arg(project_.UndoLabel()).trimmed());
    actions_->Of(Command::Redo).setText(tr("&Redo %1").arg(project_.RedoLabel()).trimmed());
}

void ViewController::OnFileNew() {
    settings_->CommitTyping();
    lifecycle_->New();
}

/// What runs for the project stops, and nothing of it comes later.
void ViewController::StopWork() {
    session_.Job().Stop();
    StopPlayback();
    capture_->Forget();
}

void ViewController::LeaveProject() {
    StopWork();
    gif_->Clear();
    source_->ShowTimesOf({});
    ui_.tabViewSettings->setCurrentIndex(0);
    ui_.customViewVideo->ResetZoom();
}

void ViewController::CleanTemporaryFiles() {
    session_.SetCopiedFrames({});
    keeper_->Stop();
    project_.Discard();
    static_cast<void>(KeepSession(true));  // without frames nothing is kept
    RemoveFile(previewFile_);
}

bool ViewController::KeepSession(bool inOrder) {
    session_.SetCopiedFrames({});
    const bool kept = keeper_->Finish(inOrder);
    if (kept) {
        recovery_->ForgetRestored();
    }
    return kept;
}

void ViewController::LookForSessions() {
    recovery_->Look();
}

void ViewController::OnSaveProfile() {
    settings_->CommitTyping();
    profile_->Save();
}
void ViewController::OnSaveProfileAs() {
    settings_->CommitTyping();
    profile_->SaveAs();
}
void ViewController::OnLoadProfile() {
    settings_->CommitTyping();
    profile_->Load();
}

void ViewController::OnSelectVideo() {
    StopPlayback();
    source_->SelectVideo();
}
void ViewController::OnSelectImage() {
    StopPlayback();
    source_->SelectImage();
}
void ViewController::OnPlayVideo() {
    playback_->Play();
}
void ViewController::OnStopVideo() {
    IsPlaying() ? StopPlayback() : source_->Close();
}
void ViewController::OnMarkAsStartTime() {
    StopPlayback();
    source_->MarkPosition(edits::Marker::Start);
}
void ViewController::OnMarkAsEndTime() {
    StopPlayback();
    source_->MarkPosition(edits::Marker::End);
}
void ViewController::OnPreviousImage() {
    source_->ShowImageNumber(project_.State().source.currentImageNumber - 1);
}
void ViewController::OnNextImage() {
    source_->ShowImageNumber(project_.State().source.currentImageNumber + 1);
}
void ViewController::VideoDragPerformed(const QString& path) {
    source_->VideoDragPerformed(path);
}
void ViewController::ImageDragPerformed(const QStringList& paths) {
    source_->ImageDragPerformed(paths);
}
void ViewController::OpenFiles(const QStringList& paths) {
    source_->OpenFiles(paths);
}
void ViewController::StopPlayback() {
    playback_->Stop();
}
void ViewController::UpdateVideoPreview() {
    preview_->UpdateVideoPreview();
}

void ViewController::OnAddFrame() {
    StopPlayback();
    capture_->AddFrame();
}
void ViewController::OnAddFramesAutomatically() {
    extraction_->AddFramesAutomatically();
}
void ViewController::OnRemoveSelectedFrame() {
    frames_->RemoveSelected();
}
void ViewController::OnRemoveAllFrames() {
    frames_->RemoveAll();
}
void ViewController::OnMoveUp() {
    frames_->MoveUp();
}
void ViewController::OnMoveDown() {
    frames_->MoveDown();
}
void ViewController::RebuildFrameStrip() {
    frames_->RebuildFrameStrip();
}
void ViewController::RefreshFrameSelection() {
    frames_->RefreshFrameSelection();
}
void ViewController::UpdateSelectionScrollViewFrames(int tag) {
    frames_->Click(tag);
}

void ViewController::OnGeneratePreview() {
    StopPlayback();
    gif_->GeneratePreview();
}
void ViewController::OnPlayStopPreview() {
    gif_->PlayStopPreview();
}
void ViewController::ResetPlay() {
    gif_->ResetPlay();
}
void ViewController::OnSaveGif() {
    save_->SaveGif();
}

void ViewController::OnHowToMakeAGifFromAVideo() {
    dialogs_.OpenAddress(VideoHelpAddress());
}
void ViewController::OnHowTocreateAGifFromImages() {
    dialogs_.OpenAddress(PicturesHelpAddress());
}

}  // namespace lumirra
