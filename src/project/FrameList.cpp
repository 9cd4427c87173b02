#include "project/FrameList.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <utility>

namespace lumirra {

QStringList FrameList::Paths() const {
    QStringList paths;
    paths.reserve(frames_.size());
    for (const Frame& frame : frames_) {
        paths.append(frame.Path());
    }
    return paths;
}

QStringList FrameList::Selected() const {
    QHash<FrameId, QString> paths;
    for (const Frame& frame : frames_) {
        paths.insert(frame.id, frame.Path());
    }
    QStringList selected;
    for (const FrameId id : selected_) {
        selected.append(paths.value(id));
    }
    return selected;
}

void FrameList::Click(int tag, bool commandHeld) {
    if (tag < 0 || tag >= Count()) {
        return;
    }
    tag_ = tag;
    Refresh(commandHeld);
}

void FrameList::Refresh(bool commandHeld) {
    if (!commandHeld) {
        selected_.clear();
    }
    if (HasTag() && selected_.removeAll(frames_[tag_].id) == 0) {
        selected_.append(frames_[tag_].id);
    }
}

void FrameList::SelectTo(int index) {
    if (!HasTag() || index < 0 || index >= Count()) {
        Click(index, false);
        return;
    }
    selected_.clear();
    const int step = index < tag_ ? -1 : 1;
    for (int i = tag_; i != index + step; i += step) {
        selected_.append(frames_[i].id);
    }
}

void FrameList::SelectAll() {
    selected_.clear();
    for (const Frame& frame : std::as_const(frames_)) {
        selected_.append(frame.id);
    }
}

void FrameList::SelectNone() {
    selected_.clear();
    tag_ = -1;
}

void FrameList::RemoveSelected() {
    if (selected_.isEmpty()) {
        return;
    }
    const QList<int> gone = Chosen(1);
    const QSet<FrameId> ids(selected_.cbegin(), selected_.cend());
    frames_.removeIf([&](const Frame& frame) { return ids.contains(frame.id); });
    selected_.clear();
    tag_ = std::min(gone.last() + 1 - static_cast<int>(gone.size()), Count() - 1);
}

QList<int> FrameList::Chosen(int least) const {
    const QSet<FrameId> ids(selected_.cbegin(), selected_.cend());
    const bool all = selected_.size() < least;
    QList<int> indices;
    for (int i = 0; i < Count(); ++i) {
        if (all || ids.contains(frames_[i].id)) {
            indices.append(i);
        }
    }
    return indices;
}

void FrameList::Reverse(const QList<int>& indices) {
    for (qsizetype i = 0, j = indices.size() - 1; i < j; ++i, --j) {
        frames_.swapItemsAt(indices[i], indices[j]);
    }
}

void FrameList::Insert(int index, const QList<Frame>& frames) {
    const int at = std::clamp(index, 0, Count());
    frames_ = frames_.first(at) + frames + frames_.sliced(at);
    selected_.clear();
    for (const Frame& frame : frames) {
        selected_.append(frame.id);
    }
    tag_ = frames.isEmpty() ? -1 : at;
}

void FrameList::Remove(const QList<int>& indices) {
    QSet<FrameId> gone;
    int tag = tag_;
    for (const int index : indices) {
        gone.insert(frames_.at(index).id);
        tag -= index < tag_ ? 1 : 0;
    }
    frames_.removeIf([&](const Frame& frame) { return gone.contains(frame.id); });
    selected_.removeIf([&](FrameId id) { return gone.contains(id); });
    tag_ = std::min(tag, Count() - 1);
}

void FrameList::SetPicture(int index, const Frame& other) {
    Frame& frame = frames_[index];
    frame.file = other.file;
    frame.size = other.size;
    frame.origin = other.origin;
}

void FrameList::SetDelay(int index, std::optional<int> hundredths) {
    frames_[index].delay = hundredths;
}

void FrameList::MoveSelectedTo(int index) {
    const FrameId tagged = TaggedId();
    const QSet<FrameId> ids(selected_.cbegin(), selected_.cend());
    QList<Frame> front;
    QList<Frame> moved;
    QList<Frame> back;
    for (int i = 0; i < Count(); ++i) {
        const Frame& frame = frames_.at(i);
        (ids.contains(frame.id) ? moved : i < index ? front : back).append(frame);
    }
    frames_ = front + moved + back;
    TagFrame(tagged);
}

void FrameList::MoveSelectedUp() {
    const FrameId tagged = TaggedId();
    int free = 0;  // the first place that no selected frame keeps
    const QList<int> chosen = Chosen(1);
    for (const int index : chosen) {
        if (index > free) {
            frames_.swapItemsAt(index - 1, index);
        }
        free = std::max(index, free + 1);
    }
    TagFrame(tagged);
}

void FrameList::MoveSelectedDown() {
    const FrameId tagged = TaggedId();
    int free = Count() - 1;
    const QList<int> chosen = Chosen(1);
    for (qsizetype i = chosen.size(); i-- > 0;) {
        if (chosen[i] < free) {
            frames_.swapItemsAt(chosen[i], chosen[i] + 1);
        }
        free = std::min(chosen[i], free - 1);
    }
    TagFrame(tagged);
}

void FrameList::TagFrame(FrameId id) {
    tag_ = -1;
    for (int i = 0; i < Count() && id != 0 && tag_ < 0; ++i) {
        tag_ = frames_.at(i).id == id ? i : -1;
    }
}

void FrameList::RemoveAll() {
    *this = FrameList();
}

bool FrameList::Swap(int first, int second, int tagAfterwards) {
    if (first < 0 || second >= Count() || tag_ < 0) {
        return false;
    }
    frames_.swapItemsAt(first, second);
    tag_ = tagAfterwards;
    return true;
}

}  // namespace lumirra
