#pragma once

#include <QRect>

namespace lumirra {

/// Where the cells of the frame strip lie and where it scrolls to. Pixels with y downwards: the
/// first frame is at the top. A scroll offset is the distance of the view's top from the strip's
/// top, always within 0 and the furthest the strip can scroll. Pure; any thread.
struct StripGeometry {
    static constexpr int cellWidth = 186;
    static constexpr int cellHeight = 186;
    static constexpr int cellSpacing = 3;
    static constexpr int pitch = cellHeight + cellSpacing;

    int frames = 0;
    int viewHeight = 0;

    /// Of all cells with the gaps between them; 0 without frames.
    int Height() const { return frames == 0 ? 0 : frames * pitch - cellSpacing; }
    QRect Cell(int index) const { return {0, index * pitch, cellWidth, cellHeight}; }
    /// The frame whose cell holds that height of the strip; -1 between cells and outside.
    int IndexAt(int y) const;

    /// Between which cells that height lies, by the nearest gap: the number of frames above it.
    int InsertionAt(int y) const;
    /// The middle of that gap.
    int InsertionY(int insertion) const { return insertion * pitch - (cellSpacing + 1) / 2; }

    /// The wheel scrolls the strip; else it belongs to what surrounds it.
    bool Scrolls() const { return frames * pitch - (viewHeight + 1) >= 0; }
    int FurthestOffset() const;

    /// After the strip was rebuilt from one of `oldFrames` frames at `oldOffset`: to the end when
    /// it grew, kept when it is as long as before, one cell towards the end (measured from the end)
    /// when it shrank.
    int OffsetAfterRebuild(int oldFrames, int oldOffset) const;
    /// After a frame moved to `index`, so that it and its neighbours can be seen.
    int OffsetAfterMoveUp(int index) const;
    int OffsetAfterMoveDown(int index) const;

  private:
    int FromEnd(int distance) const;
};

}  // namespace lumirra
