#pragma once

#include <QObject>
#include <memory>

#include "output/GifWriter.h"
#include "project/Edit.h"
#include "settings/SettingsRecords.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Dialogs;
class StaleNote;
class Project;
class Session;
class SizeEstimate;

/// The GIF of the frames: generated in the background, shown and played; at rest a line says about
/// how large it will be, a note that the
/// one shown is an old one. Main thread.
class GifController : public QObject {
    Q_OBJECT

  public:
    GifController(const Project& project, Session& session, Dialogs& dialogs, Ui::MainWindow& ui,
                  QString previewFile);
    ~GifController() override;

    /// The GIF that is shown, and saved by copying it.
    const QString& PreviewFile() const { return previewFile_; }

    void GeneratePreview();
    void PlayStopPreview();
    /// From the first picture, whether it plays or not.
    void PlayAgain();
    /// Still, at the first picture.
    void ResetPlay();
    /// As at the start: nothing was generated yet. A question that still stands is void.
    void Clear();

  Q_SIGNALS:
    /// The GIF is about to play with a loop count.
    void PlayingWithLoopCount();
    /// As `SizeEstimate` says.
    void LimitAdvised(const std::optional<lumirra::LimitAdvice>& advice);

  private:
    struct Run;

    void FollowProject(ProjectChanges what);
    void Play();
    void Start(const std::shared_ptr<Run>& run);
    void ShowWritingProgress(int done, int total, int frames, qint64 elapsed);
    void Finish(const Run& run);
    void ShowBusy(bool busy);
    void Empty(const QString& words);
    void ShowPlaying(bool playing);

    const Project& project_;
    Session& session_;
    Dialogs& dialogs_;
    Ui::MainWindow& ui_;
    QString previewFile_;
    std::unique_ptr<SizeEstimate> sizeEstimate_;
    std::unique_ptr<StaleNote> staleNote_;
    OutputSettings output_;    ///< last looked at
    int leftOutFrames_ = 0;    ///< of the GIF shown
    quint64 generations_ = 0;  ///< asked for or made void
};

}  // namespace lumirra
