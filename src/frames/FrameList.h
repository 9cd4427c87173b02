#pragma once

#include <QString>
#include <QStringList>

namespace lumirra {

/// The frames of the animation in order, with the selection of the strip. Knows paths, not files:
/// whoever removes frames deletes what the operation hands back. One thread at a time.
class FrameList {
  public:
    /// Absolute paths, list order is animation order.
    const QStringList& Paths() const { return listFramePaths; }
    /// In the order they were selected.
    const QStringList& Selected() const { return selectedFramePaths; }
    /// Index of the frame last clicked, -1 when none; follows the frame when it is moved.
    int Tag() const { return frameTag; }
    int Count() const { return static_cast<int>(listFramePaths.size()); }
    bool IsSelected(const QString& path) const { return selectedFramePaths.contains(path); }
    /// Exactly one frame is selected.
    bool CanMove() const { return selectedFramePaths.size() == 1; }

    /// At the end; the selection stays as it is until the next `Refresh`.
    void Append(const QString& path) { listFramePaths.append(path); }

    /// A click on the frame with that index: remembered, then `Refresh`. An index outside the list
    /// changes nothing.
    void Click(int tag, bool commandHeld);

    /// Applies the frame last clicked to the selection. Command held: that frame alone is added or
    /// taken out, the others stay. Else: it alone is selected, or nothing when there is none.
    void Refresh(bool commandHeld);

    /// Both forget the selection and the frame last clicked and give back what left the list.
    QStringList RemoveSelected();
    QStringList RemoveAll();

    /// Move the frame last clicked one place; false when there is none or it is at the end already.
    bool MoveUp() { return Swap(frameTag - 1, frameTag, frameTag - 1); }
    bool MoveDown() { return Swap(frameTag, frameTag + 1, frameTag + 1); }

  private:
    bool Swap(int first, int second, int tagAfterwards);

    QStringList listFramePaths;
    QStringList selectedFramePaths;
    int frameTag = -1;
};

}  // namespace lumirra
