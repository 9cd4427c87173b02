#pragma once

#include <QTimer>
#include <QUrl>
#include <memory>

#include "app/ProjectState.h"
#include "app/session/Session.h"
#include "app/window/HelpPages.h"
#include "app/window/MainWindow.h"
#include "project/FrameStore.h"
#include "project/Project.h"

namespace lumirra {

class CaptureController;
class CommandActions;
class Dialogs;
class ExtractionController;
class FrameListController;
class FrameThinningController;
class FrameTimingController;
class GifController;
class LifecycleController;
class LoopController;
class PlaybackController;
class PresetController;
class PreviewController;
class ProfileController;
class RecoveryController;
class RefreshController;
class SaveController;
class SessionKeeper;
class SettingsController;
class ShareController;
class ShownFrameController;
class SourceController;
class WindowStateView;

/// The window's controller: the front of the controllers, each of which knows the project and its
/// own part of the window, and none of the others. It carries every command by its name, and what
/// one part's work means for another. Main thread.
class ViewController : public MainWindow {
    Q_OBJECT

  public:
    /// `dialogs` must outlive the window. Frames and the GIF under construction live in
    /// `temporaryFolder`. `store`: where the program can be rated; empty when there is no place.
    ViewController(Theme& theme, Dialogs& dialogs, const QString& temporaryFolder,
                   const QUrl& store = StoreAddress());
    ~ViewController() override;

    ProjectState State() const;
    Project& CurrentProject() { return project_; }
    const ControlValues& Values() const { return project_.Values(); }
    BackgroundJob::Kind RunningJob() const { return session_.RunningJob(); }

    // the project
    void MarkModified() { project_.MarkModified(); }
    bool IsModified() const { return project_.State().IsModified(); }
    void OnFileNew();
    void OnAppQuit() { close(); }
    void OnSaveProfile();
    void OnSaveProfileAs();
    void OnLoadProfile();
    void CleanTemporaryFiles();
    /// Tells of sessions that earlier runs left.
    void LookForSessions();

    // the source
    void OnSelectVideo();
    void OnSelectImage();
    void OnPlayVideo();
    /// Stops playing, else closes the source.
    void OnStopVideo();
    void OnMarkAsStartTime();
    void OnMarkAsEndTime();
    void OnPreviousImage();
    void OnNextImage();
    void VideoDragPerformed(const QString& path);
    void ImageDragPerformed(const QStringList& paths);
    /// Files named when the program was started.
    void OpenFiles(const QStringList& paths);
    void StopPlayback();
    bool IsPlaying() const { return session_.IsPlaying(); }
    void UpdateVideoPreview();

    // frames
    void OnAddFrame();
    void OnAddFramesAutomatically();
    void OnRemoveSelectedFrame();
    void OnRemoveAllFrames();
    void OnMoveUp();
    void OnMoveDown();
    void RebuildFrameStrip();
    void RefreshFrameSelection();
    void UpdateSelectionScrollViewFrames(int tag);

    // the GIF
    void OnGeneratePreview();
    void OnPlayStopPreview();
    /// Still, at the first picture.
    void ResetPlay();
    void OnSaveGif();

    void OnHowToMakeAGifFromAVideo();
    void OnHowTocreateAGifFromImages();

    /// Nothing can be changed until `RefreshControlStates`, which a running job outlasts.
    void DisableAllControls() { session_.SetLocked(true); }
    void RefreshControlStates() { session_.SetLocked(false); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void MakeControllers(Dialogs& dialogs, const QUrl& store);
    void ConnectControllers();
    void BindProjectCommands();
    void BindSourceCommands();
    void BindFrameCommands();
    void BindGifCommands();
    void BindResets();
    void DimPanelButtons();
    void ShowFrameMenu(const QPoint& where);
    void GoToSource();
    void Follow(ProjectChanges what);
    void ShowTitle();
    void ShowHistory();
    void LoadMediaAhead();
    void StopWork();
    bool KeepSession(bool inOrder);
    void LeaveProject();
    void FlagsChanged(const QKeyEvent& event);

    Dialogs& dialogs_;
    Ui::MainWindow& ui_;
    QString previewFile_;
    FrameStore store_;
    Project project_;
    Session session_;
    std::unique_ptr<CommandActions> actions_;
    std::unique_ptr<WindowStateView> stateView_;
    std::unique_ptr<SettingsController> settings_;
    std::unique_ptr<PreviewController> preview_;
    std::unique_ptr<PlaybackController> playback_;
    std::unique_ptr<SourceController> source_;
    std::unique_ptr<CaptureController> capture_;
    std::unique_ptr<ExtractionController> extraction_;
    std::unique_ptr<RefreshController> refresh_;
    std::unique_ptr<LoopController> loop_;
    std::unique_ptr<FrameListController> frames_;
    std::unique_ptr<FrameTimingController> timing_;
    std::unique_ptr<FrameThinningController> thinning_;
    std::unique_ptr<ShownFrameController> shownFrame_;
    std::unique_ptr<GifController> gif_;
    std::unique_ptr<PresetController> preset_;
    std::unique_ptr<SaveController> save_;
    std::unique_ptr<ShareController> share_;
    std::unique_ptr<ProfileController> profile_;
    std::unique_ptr<LifecycleController> lifecycle_;
    std::unique_ptr<RecoveryController> recovery_;
    std::unique_ptr<SessionKeeper> keeper_;
    QTimer loadAhead_;
    std::jthread loader_;
};

}  // namespace lumirra
