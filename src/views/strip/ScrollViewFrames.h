#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

#include "views/strip/ImageViewFrame.h"
#include "views/strip/StripGeometry.h"
#include "views/strip/ThumbnailCache.h"

namespace lumirra {

/// The strip of frames, one cell below the other. Only cells that can be seen are drawn and only
/// their thumbnails read. Knows indices and thumbnail files; which frames are selected is told.
///
/// Mouse and keyboard report the frame they mean; a click with Ctrl held is told apart by whoever
/// listens. Up, Down, Page and Home keys report the frame they go to, with Ctrl they only go there;
/// Space and Enter report the frame that has the keyboard.
///
/// The selected frames can be dragged elsewhere: a line shows where they would go, near its edges
/// the strip scrolls, Escape leaves everything as it was.
class ScrollViewFrames : public QAbstractScrollArea {
    Q_OBJECT

  public:
    explicit ScrollViewFrames(QWidget* parent = nullptr);

    /// One cell for each thumbnail file, in order, without a border. Scrolls by the rules of
    /// `StripGeometry`; what was read of these files stays.
    void Rebuild(QStringList thumbnailPaths);

    /// The border of every cell, one entry for each frame; those beyond it are not selected. The
    /// keyboard goes to frame `current`, or stays when there is no such frame.
    void ShowSelection(const std::vector<bool>& selected, int current);
    CellLook Look(int index) const { return looks_.at(static_cast<std::size_t>(index)); }

    /// `caption(index)`: what is said about a frame under the pointer or with the keyboard.
    void SetCaption(std::function<QString(int)> caption) { caption_ = std::move(caption); }

    QString Caption(int index) const { return caption_ ? caption_(index) : QString(); }

    /// `badge(index)`: what is always said about a frame; empty for most.
    void SetBadge(std::function<QString(int)> badge) { badge_ = std::move(badge); }
    QString Badge(int index) const { return badge_ ? badge_(index) : QString(); }

    /// What is said about frames has changed.
    void RefreshWords() { viewport()->update(); }

    /// Scrolls no further than needed to show the frame; none without one.
    void Reveal(int index);

    /// Whether frames can be dragged elsewhere just now. A drag that is going on ends.
    void AllowDragging(bool allowed);
    /// In front of which frame those that are dragged would go; absent: none are.
    std::optional<int> Insertion() const { return insertion_; }

    /// The frame that has the keyboard when the strip has it; -1 for none.
    int Current() const { return current_; }
    /// The frame whose cell is there; -1 for none.
    int IndexAt(const QPoint& viewportPoint) const;

    const StripGeometry& Geometry() const { return geometry_; }
    int Offset() const;
    void ScrollTo(int offset);
    /// Where the cell is in the viewport just now.
    QRect CellRect(int index) const;
    /// The thumbnail as far as it has been read.
    const QImage* Thumbnail(int index) const;

    /// The wheel scrolls the strip; else it goes to what surrounds it.
    bool scrollingEnabled = true;

  Q_SIGNALS:
    void UpdateSelectionScrollViewFrames(int tag);
    /// With Shift held: everything from the frame last meant to this one.
    void SelectionExtended(int tag);
    /// Escape.
    void SelectionDropped();
    /// The selected frames were dragged in front of the frame with that index, or to the end.
    void FramesDragged(int index);
    /// A double click.
    void FrameOpened(int index);
    /// A right click or the menu key; the frame that is meant is selected by then.
    void MenuWanted(const QPoint& globalPoint);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    int FirstVisible() const;
    int LastVisible() const;
    void UpdateRange();
    void UpdateCell(int index);
    void SetHovered(int index);
    void SetCurrent(int index);
    void Tell(int index, Qt::KeyboardModifiers held);
    int KeyTarget(int key) const;
    int SelectedFrames() const;
    void DragTo(const QPoint& viewportPoint);
    void EndDrag();
    void DrawInsertion(QPainter& painter) const;

    StripGeometry geometry_;
    QStringList paths_;
    std::vector<CellLook> looks_;
    ThumbnailCache thumbnails_;
    std::function<QString(int)> caption_;
    std::function<QString(int)> badge_;
    int hovered_ = -1;
    int current_ = -1;  ///< the cell that has the keyboard
    int pressed_ = -1;  ///< the cell on which the mouse button went down
    QPoint pressedAt_;
    bool tellsOnRelease_ = false;  ///< a press on one of several selected frames may begin a drag
    bool mayDrag_ = true;
    QPoint draggedTo_;
    std::optional<int> insertion_;
    QBasicTimer scrolling_;    ///< while frames are dragged
    bool byKeyboard_ = false;  ///< the keyboard was used last: the current cell is marked
};

}  // namespace lumirra
