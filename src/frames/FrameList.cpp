#include "frames/FrameList.h"

#include <utility>

namespace lumirra {

void FrameList::Click(int tag, bool commandHeld) {
    if (tag < 0 || tag >= Count()) {
        return;
    }
    frameTag = tag;
    Refresh(commandHeld);
}

void FrameList::Refresh(bool commandHeld) {
    const bool clicked = frameTag >= 0 && frameTag < Count();
    if (!commandHeld) {
        selectedFramePaths.clear();
        if (clicked) {
            selectedFramePaths.append(listFramePaths[frameTag]);
        }
        return;
    }
    if (clicked && selectedFramePaths.removeAll(listFramePaths[frameTag]) == 0) {
        selectedFramePaths.append(listFramePaths[frameTag]);
    }
}

QStringList FrameList::RemoveSelected() {
    QStringList removed = std::exchange(selectedFramePaths, {});
    for (const QString& path : std::as_const(removed)) {
        listFramePaths.removeAll(path);
    }
    frameTag = -1;
    return removed;
}

QStringList FrameList::RemoveAll() {
    selectedFramePaths.clear();
    frameTag = -1;
    return std::exchange(listFramePaths, {});
}

bool FrameList::Swap(int first, int second, int tagAfterwards) {
    if (first < 0 || second >= Count() || frameTag < 0) {
        return false;
    }
    listFramePaths.swapItemsAt(first, second);
    frameTag = tagAfterwards;
    return true;
}

}  // namespace lumirra
