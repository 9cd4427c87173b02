#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>
#include <memory>
#include <optional>

#include "app/Dialogs.h"
#include "app/MainWindow.h"
#include "app/ProjectState.h"
#include "app/gif/OutputPreferences.h"
#include "app/jobs/BackgroundJob.h"
#include "app/source/PreviewSource.h"

namespace lumirra {

class ControlWidgets;
class Film;
struct ExtractionJob;
struct ExtractionProgress;
struct ExtractionResult;
class SizeEstimate;

/// The window's controller: owns all state for the life of the window and handles every command.
/// All operations run on the main thread; workers get copies and answer with queued calls.
class ViewController : public MainWindow {
    Q_OBJECT

  public:
    /// `dialogs` must outlive the window. Frames and the GIF under construction live in
    /// `temporaryFolder`.
    ViewController(Theme& theme, Dialogs& dialogs, QString temporaryFolder);
    ~ViewController() override;

    const ProjectState& State() const { return state_; }
    ControlValues Values() const;

    // Lifecycle.cpp: start, New, Quit, close, the mark of unsaved changes, clean-up
    void InitializeControls();
    void MarkModified();
    bool IsModified() const;
    void OnFileNew();
    void OnAppQuit();
    void OnHowToMakeAGifFromAVideo();
    void OnHowTocreateAGifFromImages();
    /// Removes the frame and its thumbnail; what fails is one line on standard output.
    void DeleteFrameFile(const QString& path);
    void DeleteTempGif();
    void CleanTemporaryFiles();

    // BusyLock.cpp: the controls while a job runs
    /// `RefreshControlStates` undoes it once no job runs; until then it keeps the lock.
    void DisableAllControls();
    /// The one long job that runs just now.
    BackgroundJob::Kind RunningJob() const { return job_.Running(); }

    // SettingHandlers.cpp: what follows when a person changed a setting control, by its row
    void OnControlEdited(Control control);
    void StoreTextFieldsValues();
    void OnAdjustSettingsReset();
    void OnCartoonReset();
    void OnScketchReset();
    void OnVignetteReset();
    void OnTextReset();
    void OnOutputReset();

    // OutputTab.cpp: what is kept for the user, not in the profile, and the line with the size
    OutputPreferences Preferences() const;
    void OnOutputPreferenceChanged();
    /// To be called after the frame list or the output settings changed; cheap.
    void RefreshSizeEstimate();

    // GifPreview.cpp: the GIF of the frames, written and played
    void OnGeneratePreview();
    void OnPlayStopPreview();
    /// Still, at the first picture.
    void ResetPlay();

    // SaveGif.cpp
    void OnSaveGif();

    // CropResize.cpp
    void UpdateCropResizeGeometry();
    void OnTextFieldDimensionsChanged(Control dimensionField);
    void OnCropResizeReset();

    // Profile.cpp
    void OnSaveProfile();
    void OnSaveProfileAs();
    void OnLoadProfile();

    // SourcePanel.cpp: the source, its position, markers, pictures and zoom
    void ResetStartEndMarks();
    void RefreshControlStates();
    void OnSelectVideo();
    void OnSelectImage();
    void OnStopVideo();
    void OnVideoPositionChanged();
    void OnMarkAsStartTime();
    void OnMarkAsEndTime();
    void OnPreviousImage();
    void OnNextImage();
    void OnZoomIn();
    void OnZoomOut();
    void OnResetZoom();
    void VideoDragPerformed(const QString& path);
    void ImageDragPerformed(const QStringList& paths);
    /// Files named when the program was started: as if dropped on the panel together; says so when
    /// they are nothing that can be opened.
    void OpenFiles(const QStringList& paths);

    // frames/FrameCapture.cpp, frames/FrameExtraction.cpp
    void OnAddFrame();
    void OnAddFramesAutomatically();

    // frames/FrameStrip.cpp: the list of frames and its strip
    void RebuildFrameStrip();
    /// The frame last clicked becomes the selection, or with Ctrl held joins or leaves it.
    void RefreshFrameSelection();
    void UpdateSelectionScrollViewFrames(int tag);
    void OnRemoveSelectedFrame();
    void OnRemoveAllFrames();
    void OnMoveUp();
    void OnMoveDown();

    // Playback.cpp
    void OnPlayVideo();
    void StopPlayback();
    bool IsPlaying() const;

    // PreviewUpdate.cpp
    void UpdateVideoPreview();

  Q_SIGNALS:
    /// From the job of a capture: the frame to store at that path.
    void Captured(const QImage& frame, const QString& path);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // Wiring.cpp: the start, in named steps
    void ConnectSourcePanel();
    void ConnectFrames();
    void ConnectCommands();
    void ConnectMenus();
    void ConnectOutputTab();
    void ConnectGifPreview();
    void ShowOutputPreferences();
    void DimPanelButtons();

    void flagsChanged(const QKeyEvent& event);
    bool MayLoseChanges(const QString& question);
    void LoadMediaAhead();

    void ResetGroup(lumirra::ResetGroup group, std::optional<Control> onlyWhenOn);
    void CommitTyping();
    void WriteProfile();

    struct GifRun;
    QString PreviewFile() const;
    void GenerateGif(GifRun& run, const std::stop_token& stop);
    bool BeginWriting(bool framesDiffer);
    void ShowWritingProgress(int done, int total, int frames, qint64 elapsed);
    void GifGenerationFinished(const GifRun& run);
    void ClearGifPreview();
    void EmptyGifPreview(const QString& words);
    void ShowGifPlaying(bool playing);
    void AskForRating();

    void ReturnFocus();
    void AcceptSources(bool accepted);

    void StoreCapture(const QImage& frame, const QString& path);
    void ForgetCaptures();
    void StartExtraction(const ExtractionJob& extraction);
    void ShowExtractionProgress(const ExtractionProgress& progress);
    void FinishExtraction(const ExtractionResult& result);
    void ShowExtractionPlan();
    void ShowAddFramesStatus(const QString& text);
    QString FrameCaption(int index) const;
    void ShowFrameSelection();
    void EnableMoveButtons();
    /// All of them, with their files, without a question.
    void RemoveFrames();
    void ShowMoved(int offset);

    ImageSize BaseSize() const;
    bool HasSource() const;
    bool ShowsPicture() const;
    void LoadVideo(const QString& path);
    void LoadImages(const QStringList& added);
    void ShowImageNumber(int number);
    void ShowTimesOf(const QString& path);
    void StepFrame(int frames);
    void ShowStillView();
    void ShowPlayButton();

    /// As `UpdateVideoPreview`, but while a knob is held and a render runs, the next render starts
    /// when that one's picture has been shown: pictures keep coming while dragging.
    void RequestPreview(bool dragging);
    void StartPreview();
    void FinishPreview(const PreviewResult& result, quint64 generation);
    void ForgetPreview();

    Dialogs& dialogs_;
    QString temporaryFolder_;
    Ui::MainWindow& ui_;
    std::unique_ptr<ControlWidgets> controls_;
    std::unique_ptr<SizeEstimate> sizeEstimate_;
    ProjectState state_;

    std::unique_ptr<Film> film_;

    std::shared_ptr<PreviewSource> previewSource_;
    quint64 previewGeneration_ = 0;  ///< of the source: a picture of an earlier one is dropped
    bool dragWaiting_ = false;
    bool loadedAhead_ = false;
    QTimer loadAhead_;
    double sourceDuration_ = 0;
    double sourceFrameRate_ = 0;
    QStringList capturesInFlight_;  ///< frame files that are on their way
    QElapsedTimer extractionClock_;
    int leftOutFrames_ = 0;  ///< of the GIF shown
    QPointer<QWidget> focusBeforeLock_;
    BackgroundJob job_;
    /// Last: its destructor waits for the jobs that use the rest.
    QThreadPool jobs_;
};

}  // namespace lumirra
