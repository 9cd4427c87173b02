#include "views/strip/ScrollViewFrames.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "views/panel/EmptyState.h"
#include "views/style/Colors.h"

namespace lumirra {
namespace {

constexpr int kKeptReady = 1;  ///< cells beyond the visible ones whose thumbnails are read

constexpr int kInsertionLine = 5;
constexpr int kScrollingEdge = 48;  ///< pixels from an edge within which a drag scrolls
constexpr int kScrollingMs = 16;

}  // namespace

ScrollViewFrames::ScrollViewFrames(QWidget* parent) : QAbstractScrollArea(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(StripGeometry::pitch / 3);
    viewport()->setAutoFillBackground(false);
    viewport()->setMouseTracking(true);
    connect(&thumbnails_, &ThumbnailCache::Loaded, this, [this](const QString& path) {
        // Only cells that can be seen need it; copies of a frame share their file.
        for (int i = FirstVisible(); i <= LastVisible(); ++i) {
            if (paths_.at(i) == path) {
                UpdateCell(i);
            }
        }
    });
}

void ScrollViewFrames::Rebuild(QStringList thumbnailPaths) {
    const int oldFrames = geometry_.frames;
    const int oldOffset = Offset();
    paths_ = std::move(thumbnailPaths);
    geometry_.frames = static_cast<int>(paths_.size());
    looks_.assign(paths_.size(), CellLook::Fresh);
    thumbnails_.RetryUnreadable();
    hovered_ = -1;
    EndDrag();
    current_ = std::min(current_, geometry_.frames - 1);
    UpdateRange();
    ScrollTo(geometry_.OffsetAfterRebuild(oldFrames, oldOffset));
    viewport()->update();
}

void ScrollViewFrames::ShowSelection(const std::vector<bool>& selected, int current) {
    for (std::size_t i = 0; i < looks_.size(); ++i) {
        looks_[i] = i < selected.size() && selected[i] ? CellLook::Selected : CellLook::NotSelected;
    }
    if (current >= 0 && current < geometry_.frames) {
        current_ = current;
    }
    viewport()->update();
}

int ScrollViewFrames::Offset() const {
    return verticalScrollBar()->value();
}

void ScrollViewFrames::ScrollTo(int offset) {
    verticalScrollBar()->setValue(offset);
}

QRect ScrollViewFrames::CellRect(int index) const {
    const int left = (viewport()->width() - StripGeometry::cellWidth) / 2;
    return geometry_.Cell(index).translated(left, -Offset());
}

const QImage* ScrollViewFrames::Thumbnail(int index) const {
    return thumbnails_.Find(paths_.at(index));
}

int ScrollViewFrames::IndexAt(const QPoint& viewportPoint) const {
    const int index = geometry_.IndexAt(viewportPoint.y() + Offset());
    return index >= 0 && CellRect(index).contains(viewportPoint) ? index : -1;
}

void ScrollViewFrames::Reveal(int index) {
    if (index < 0 || index >= geometry_.frames) {
        return;
    }
    const QRect cell = geometry_.Cell(index);
    ScrollTo(std::min(std::max(Offset(), cell.bottom() + 1 - geometry_.viewHeight), cell.top()));
}

int ScrollViewFrames::SelectedFrames() const {
    return static_cast<int>(std::count(looks_.begin(), looks_.end(), CellLook::Selected));
}

void ScrollViewFrames::UpdateRange() {
    geometry_.viewHeight = viewport()->height();
    scrollingEnabled = geometry_.Scrolls();
    verticalScrollBar()->setPageStep(geometry_.viewHeight);
    verticalScrollBar()->setRange(0, geometry_.FurthestOffset());
}

int ScrollViewFrames::FirstVisible() const {
    return std::max(0, Offset() / StripGeometry::pitch);
}

int ScrollViewFrames::LastVisible() const {
    return std::min(geometry_.frames - 1, (Offset() + geometry_.viewHeight) / StripGeometry::pitch);
}

void ScrollViewFrames::UpdateCell(int index) {
    if (index >= 0) {
        viewport()->update(CellRect(index));
    }
}

void ScrollViewFrames::SetHovered(int index) {
    const int before = std::exchange(hovered_, index);
    if (before != index) {
        UpdateCell(before);
        UpdateCell(index);
    }
}

/// Moves the keyboard's cell, in view.
void ScrollViewFrames::SetCurrent(int index) {
    UpdateCell(std::exchange(current_, index));
    Reveal(index);
    UpdateCell(index);
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::Focus);
        event.setChild(index);
        QAccessible::updateAccessibility(&event);
    }
}

void ScrollViewFrames::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    if (geometry_.frames == 0) {
        DrawEmptyState(painter, QRectF(viewport()->rect()).adjusted(12, 12, -12, -12), palette(),
                       QStringLiteral("frames-empty"), tr("Frames you add appear here"));
        return;
    }
    const double scale = viewport()->devicePixelRatioF();
    thumbnails_.SetSide(qRound(StripGeometry::cellWidth * scale));
    const int first = FirstVisible();
    const int last = LastVisible();
    for (int i = first; i <= last; ++i) {
        const QRect cell = CellRect(i);
        if (!event->rect().intersects(cell)) {
            continue;
        }
        ImageViewFrame frame;
        frame.look = Look(i);
        frame.thumbnail = Thumbnail(i);
        frame.badge = Badge(i);
        frame.isMoved = insertion_ && frame.look == CellLook::Selected;
        frame.hasKeyboard = i == current_ && byKeyboard_ && hasFocus();
        if ((i == hovered_ || frame.hasKeyboard) && !insertion_) {
            frame.caption = Caption(i);
        }
        frame.Draw(painter, cell, palette());
    }
    DrawInsertion(painter);
    QStringList wanted = paths_.mid(first, last - first + 1);
    wanted += paths_.mid(last + 1, kKeptReady);
    wanted += paths_.mid(std::max(0, first - kKeptReady), std::min(first, kKeptReady));
    thumbnails_.Want(std::move(wanted));
}

void ScrollViewFrames::resizeEvent(QResizeEvent*) {
    UpdateRange();
}

void ScrollViewFrames::scrollContentsBy(int, int) {
    SetHovered(viewport()->underMouse() ? IndexAt(viewport()->mapFromGlobal(QCursor::pos())) : -1);
    viewport()->update();
}

void ScrollViewFrames::mousePressEvent(QMouseEvent* event) {
    byKeyboard_ = false;
    const int index = IndexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index >= 0) {
        UpdateCell(std::exchange(current_, index));
        pressed_ = index;
        pressedAt_ = event->position().toPoint();
        const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier));
        tellsOnRelease_ =
            plain && mayDrag_ && Look(index) == CellLook::Selected && SelectedFrames() > 1;
        if (!tellsOnRelease_) {
            Tell(index, event->modifiers());
        }
    }
}

void ScrollViewFrames::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const bool held = event->buttons() & Qt::LeftButton;
    if (insertion_) {
        DragTo(at);
    } else if (held && mayDrag_ && pressed_ >= 0 && pressed_ < geometry_.frames &&
               Look(pressed_) == CellLook::Selected &&
               (at - pressedAt_).manhattanLength() >= QApplication::startDragDistance()) {
        SetHovered(-1);
        viewport()->setCursor(Qt::ClosedHandCursor);
        scrolling_.start(kScrollingMs, this);
        DragTo(at);
    } else if (!held) {
        SetHovered(IndexAt(at));
    }
}

void ScrollViewFrames::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const std::optional<int> insertion = insertion_;
    const int pressed = std::exchange(pressed_, -1);
    const bool tells = std::exchange(tellsOnRelease_, false);
    EndDrag();
    if (insertion) {
        Q_EMIT FramesDragged(*insertion);
    } else if (tells && pressed >= 0 && pressed < geometry_.frames) {
        Tell(pressed, {});
    }
}

void ScrollViewFrames::mouseDoubleClickEvent(QMouseEvent* event) {
    const int index = IndexAt(event->position().toPoint());
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier));
    if (event->button() == Qt::LeftButton && plain && index >= 0) {
        Q_EMIT FrameOpened(index);
    } else {
        mousePressEvent(event);
    }
}

/// Shows where the frames would go if they were let go there.
void ScrollViewFrames::DragTo(const QPoint& viewportPoint) {
    draggedTo_ = viewportPoint;
    insertion_ = geometry_.InsertionAt(viewportPoint.y() + Offset());
    viewport()->update();
}

void ScrollViewFrames::EndDrag() {
    scrolling_.stop();
    pressed_ = -1;
    tellsOnRelease_ = false;
    if (insertion_) {
        insertion_.reset();
        viewport()->unsetCursor();
        viewport()->update();
    }
}

void ScrollViewFrames::AllowDragging(bool allowed) {
    mayDrag_ = allowed;
    if (!allowed) {
        EndDrag();
    }
}

/// The nearer to an edge or beyond it, the faster.
void ScrollViewFrames::timerEvent(QTimerEvent* event) {
    if (event->timerId() != scrolling_.timerId()) {
        QAbstractScrollArea::timerEvent(event);
        return;
    }
    const int above = kScrollingEdge - draggedTo_.y();
    const int below = draggedTo_.y() - (geometry_.viewHeight - kScrollingEdge);
    const int step = std::min(std::max({above, below, 0}), 2 * kScrollingEdge) / 3;
    if (step > 0) {
        ScrollTo(Offset() + (above > below ? -step : step));
        DragTo(draggedTo_);
    }
}

void ScrollViewFrames::DrawInsertion(QPainter& painter) const {
    if (!insertion_) {
        return;
    }
    const int middle = geometry_.InsertionY(*insertion_) - Offset();
    QRect line(CellRect(0).left(), 0, StripGeometry::cellWidth, kInsertionLine);
    line.moveTop(std::clamp(middle - kInsertionLine / 2, 0,
                            std::max(0, viewport()->height() - kInsertionLine)));
    const ThemeColors& colors = ColorsOf(palette());
    painter.fillRect(line.adjusted(0, -1, 0, 1), colors.canvas);
    painter.fillRect(line, colors.accent);
}

/// The frame under the pointer is meant, with all that are selected if it is one of them.
void ScrollViewFrames::contextMenuEvent(QContextMenuEvent* event) {
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    const int index = byMouse ? IndexAt(event->pos()) : current_;
    if (index < 0) {
        return;
    }
    EndDrag();
    UpdateCell(std::exchange(current_, index));
    Reveal(byMouse ? -1 : index);
    if (Look(index) != CellLook::Selected) {
        Tell(index, {});
    }
    Q_EMIT MenuWanted(byMouse ? event->globalPos()
                              : viewport()->mapToGlobal(CellRect(index).center()));
}

bool ScrollViewFrames::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) {
        SetHovered(-1);
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void ScrollViewFrames::wheelEvent(QWheelEvent* event) {
    if (!scrollingEnabled) {
        event->ignore();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

/// Where a key leads from the current cell; -1 for keys that lead nowhere.
int ScrollViewFrames::KeyTarget(int key) const {
    const int page = std::max(1, geometry_.viewHeight / StripGeometry::pitch);
    const int last = geometry_.frames - 1;
    const auto from = [&](int step) {
        return current_ < 0 ? 0 : std::clamp(current_ + step, 0, last);
    };
    switch (key) {
        case Qt::Key_Up:
            return from(-1);
        case Qt::Key_Down:
            return from(1);
        case Qt::Key_PageUp:
            return from(-page);
        case Qt::Key_PageDown:
            return from(page);
        case Qt::Key_Home:
            return 0;
        case Qt::Key_End:
            return last;
        default:
            return -1;
    }
}

void ScrollViewFrames::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Escape && insertion_) {
        EndDrag();
        return;
    }
    if (key == Qt::Key_Escape && geometry_.frames > 0) {
        Q_EMIT SelectionDropped();
        return;
    }
    const bool chooses = key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
    const int target = chooses ? current_ : KeyTarget(key);
    if (geometry_.frames == 0 || target < 0) {
        event->ignore();
        return;
    }
    byKeyboard_ = true;
    SetCurrent(target);
    if (chooses || !(event->modifiers() & Qt::ControlModifier)) {
        Tell(target, event->modifiers());
    }
}

void ScrollViewFrames::Tell(int index, Qt::KeyboardModifiers held) {
    if (held & Qt::ShiftModifier) {
        Q_EMIT SelectionExtended(index);
    } else {
        Q_EMIT UpdateSelectionScrollViewFrames(index);
    }
}

void ScrollViewFrames::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    byKeyboard_ = event->reason() != Qt::MouseFocusReason;
    if (current_ < 0 && geometry_.frames > 0) {
        current_ = 0;
    }
    update();
    viewport()->update();
}

void ScrollViewFrames::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    update();
    viewport()->update();
}

}  // namespace lumirra
