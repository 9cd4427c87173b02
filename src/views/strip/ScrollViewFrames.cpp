#include "views/strip/ScrollViewFrames.h"

#include <QAccessible>
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

namespace lumirra {
namespace {

constexpr int kKeptReady = 1;  ///< cells beyond the visible ones whose thumbnails are read

}  // namespace

ScrollViewFrames::ScrollViewFrames(QWidget* parent) : QAbstractScrollArea(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(StripGeometry::pitch / 3);
    viewport()->setAutoFillBackground(false);
    viewport()->setMouseTracking(true);
    connect(&thumbnails_, &ThumbnailCache::Loaded, this,
            [this](const QString& path) { UpdateCell(static_cast<int>(paths_.indexOf(path))); });
}

void ScrollViewFrames::Rebuild(QStringList thumbnailPaths) {
    const int oldFrames = geometry_.frames;
    const int oldOffset = Offset();
    paths_ = std::move(thumbnailPaths);
    geometry_.frames = static_cast<int>(paths_.size());
    looks_.assign(paths_.size(), CellLook::Fresh);
    thumbnails_.RetryUnreadable();
    hovered_ = -1;
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

void ScrollViewFrames::UpdateRange() {
    geometry_.viewHeight = viewport()->height();
    scrollingEnabled = geometry_.Scrolls();
    verticalScrollBar()->setPageStep(geometry_.viewHeight);
    verticalScrollBar()->setRange(0, geometry_.FurthestOffset());
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
    const QRect cell = geometry_.Cell(index);
    ScrollTo(std::clamp(Offset(), cell.bottom() + 1 - geometry_.viewHeight, cell.top()));
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
    const int first = std::max(0, Offset() / StripGeometry::pitch);
    const int last =
        std::min(geometry_.frames - 1, (Offset() + geometry_.viewHeight) / StripGeometry::pitch);
    for (int i = first; i <= last; ++i) {
        const QRect cell = CellRect(i);
        if (!event->rect().intersects(cell)) {
            continue;
        }
        ImageViewFrame frame;
        frame.look = Look(i);
        frame.thumbnail = Thumbnail(i);
        frame.hasKeyboard = i == current_ && byKeyboard_ && hasFocus();
        if (i == hovered_ || frame.hasKeyboard) {
            frame.caption = Caption(i);
        }
        frame.Draw(painter, cell, palette());
    }
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
        Tell(index, event->modifiers());
    }
}

void ScrollViewFrames::mouseMoveEvent(QMouseEvent* event) {
    SetHovered(IndexAt(event->position().toPoint()));
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
