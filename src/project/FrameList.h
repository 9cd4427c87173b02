#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "project/Frame.h"

namespace lumirra {

/// The frames of the animation in order, with the selection of the strip. A value: copying costs
/// nothing until one of the copies changes.
class FrameList {
  public:
    const QList<Frame>& Frames() const { return frames_; }
    const Frame& At(int index) const { return frames_.at(index); }
    int Count() const { return static_cast<int>(frames_.size()); }
    /// Absolute paths, list order is animation order (`listFramePaths`).
    QStringList Paths() const;

    /// In the order they were selected.
    const QList<FrameId>& SelectedIds() const { return selected_; }
    /// Their paths (`selectedFramePaths`).
    QStringList Selected() const;
    bool IsSelected(int index) const { return selected_.contains(frames_.at(index).id); }
    /// Index of the frame last clicked, -1 when none; follows the frame when it is moved.
    int Tag() const { return tag_; }
    /// Exactly one frame is selected.
    bool CanMove() const { return selected_.size() == 1; }

    /// At the end; the selection stays as it is until the next `Refresh`.
    void Append(Frame frame) { frames_.append(std::move(frame)); }

    /// A click on the frame with that index: remembered, then `Refresh`. An index outside the list
    /// changes nothing.
    void Click(int tag, bool commandHeld);

    /// Applies the frame last clicked to the selection. Command held: that frame alone is added or
    /// taken out, the others stay. Else: it alone is selected, or nothing when there is none.
    void Refresh(bool commandHeld);

    /// The selection becomes all frames from the one last clicked to that one; without one it is a
    /// click.
    void SelectTo(int index);
    void SelectAll();
    void SelectNone();

    /// The frame after those removed becomes the one last clicked.
    void RemoveSelected();
    void RemoveAll();

    /// The frames that an operation on "the selected ones, or all" is about, by index, ascending:
    /// the selected ones when they are at least `least`.
    QList<int> Chosen(int least) const;

    /// The frames at these ascending indices in reverse order, each in another's place.
    void Reverse(const QList<int>& indices);
    /// In front of the frame with that index, or at the end; they become the selection.
    void Insert(int index, const QList<Frame>& frames);
    /// Takes out the frames at these ascending indices, of the selection too. The frame last
    /// clicked stays that, or the one after it becomes it.
    void Remove(const QList<int>& indices);
    /// Absent: it follows the setting.
    void SetDelay(int index, std::optional<int> hundredths);
    /// The frame shows what `other` shows, and came from where that came from.
    void SetPicture(int index, const Frame& other);

    /// The selected frames together, in their order, in front of the frame with that index, or at
    /// the end.
    void MoveSelectedTo(int index);
    /// Each selected frame one place towards the start or the end, as far as it does not overtake
    /// another one.
    void MoveSelectedUp();
    void MoveSelectedDown();

    /// Move the frame last clicked one place; false when there is none or it is at the end already.
    bool MoveUp() { return Swap(tag_ - 1, tag_, tag_ - 1); }
    bool MoveDown() { return Swap(tag_, tag_ + 1, tag_ + 1); }

    friend bool operator==(const FrameList&, const FrameList&) = default;

  private:
    bool HasTag() const { return tag_ >= 0 && tag_ < Count(); }
    bool Swap(int first, int second, int tagAfterwards);
    FrameId TaggedId() const { return HasTag() ? frames_.at(tag_).id : 0; }
    void TagFrame(FrameId id);

    QList<Frame> frames_;
    QList<FrameId> selected_;
    int tag_ = -1;
};

}  // namespace lumirra
