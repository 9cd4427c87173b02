#pragma once

#include <QObject>
#include <functional>

#include "project/Edit.h"

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Dialogs;
class Project;
class Session;

/// The list of frames: shows it in the strip, follows clicks, moves and removes. Main thread.
class FrameListController : public QObject {
    Q_OBJECT

  public:
    FrameListController(Project& project, Session& session, Dialogs& dialogs, Ui::MainWindow& ui);

    /// A click on the frame with that index; one that does not exist changes nothing.
    void Click(int tag);
    void RemoveSelected();
    /// Asks first.
    void RemoveAll();
    void MoveUp();
    void MoveDown();
    /// Of the whole selection.
    void MoveSelectedUp();
    void MoveSelectedDown();
    void Cut();
    void Copy();
    /// Behind the selection.
    void Paste();
    void SelectAll();
    void Duplicate();
    /// The selected frames, or all.
    void Reverse();
    void ForthAndBack();

    /// The project's last step, with the frames that it was about in view.
    void Undo();
    void Redo();

    void RebuildFrameStrip();
    void RefreshFrameSelection();

  private:
    void Follow(ProjectChanges what);
    std::function<Frame(const Frame&)> Copies();
    void ApplyInView(Edit edit);
    void RevealIfChanged(const QList<Frame>& before);
    void ShowMoved(Edit edit, int offset);

    Project& project_;
    Session& session_;
    Dialogs& dialogs_;
    Ui::MainWindow& ui_;
    int shownTag_ = -1;  ///< the frame last clicked, as far as the strip knows
};

}  // namespace lumirra
