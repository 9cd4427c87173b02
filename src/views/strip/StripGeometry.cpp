#include "views/strip/StripGeometry.h"

#include <algorithm>

namespace lumirra {

int StripGeometry::IndexAt(int y) const {
    if (y < 0 || y >= Height() || y % pitch >= cellHeight) {
        return -1;
    }
    return y / pitch;
}

int StripGeometry::InsertionAt(int y) const {
    return std::clamp(y + pitch / 2, 0, frames * pitch) / pitch;
}

int StripGeometry::FurthestOffset() const {
    return std::max(0, Height() - viewHeight);
}

/// The offset that leaves `distance` pixels of the strip below the view.
int StripGeometry::FromEnd(int distance) const {
    return std::clamp(Height() - viewHeight - distance, 0, FurthestOffset());
}

int StripGeometry::OffsetAfterRebuild(int oldFrames, int oldOffset) const {
    if (!Scrolls()) {
        return 0;
    }
    if (frames > oldFrames) {
        return FurthestOffset();
    }
    const StripGeometry old{oldFrames, viewHeight};
    const int below = old.Height() - viewHeight - oldOffset;
    return FromEnd(frames == oldFrames ? below : std::max(0, below - pitch));
}

int StripGeometry::OffsetAfterMoveUp(int index) const {
    if (index < 2) {
        return 0;
    }
    return FromEnd(index < frames - 1 ? pitch * (frames - index - 2) : 0);
}

int StripGeometry::OffsetAfterMoveDown(int index) const {
    if (index == 1) {
        return 0;
    }
    return FromEnd(index >= 2 && index < frames - 2 ? pitch * (frames - index - 1) : 0);
}

}  // namespace lumirra
