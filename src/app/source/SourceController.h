#pragma once

#include <QObject>
#include <QStringList>

#include "project/Edit.h"
#include "project/edits/SourceEdits.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Dialogs;
class Project;

/// What frames are taken from: opens, closes, moves through it and marks it, and shows where one
/// stands. Main thread.
class SourceController : public QObject {
    Q_OBJECT

  public:
    SourceController(Project& project, Dialogs& dialogs, Ui::MainWindow& ui);

    void SelectVideo();
    void SelectImage();
    /// Dropped on the panel; an empty path or list is reported.
    void VideoDragPerformed(const QString& path);
    void ImageDragPerformed(const QStringList& paths);
    /// Files named when the program was started: as if dropped on the panel together; says so when
    /// they are nothing that can be opened.
    void OpenFiles(const QStringList& paths);
    /// Nothing happens without a source and a picture.
    void Close();

    void MarkPosition(edits::Marker marker);
    void ShowImageNumber(int number);
    /// To the next picture of the source, or one before.
    void Step(int pictures);

    /// To where a frame came from; says so when that is not open.
    void GoToPlaceOf(const Frame& frame);

    /// The labels of the markers show that video's beginning and end.
    void ShowTimesOf(const QString& path);

  private:
    void ConnectSlider();
    void ConnectDrops();
    void Follow(ProjectChanges what);
    void ShowMarkers();
    QString TimeAt(float position) const;

    Project& project_;
    Dialogs& dialogs_;
    Ui::MainWindow& ui_;
    QString labelledPath_;  ///< of the video whose times the labels show
};

}  // namespace lumirra
