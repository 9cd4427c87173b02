#include <gtest/gtest.h>

#include "views/strip/StripGeometry.h"

namespace lumirra {
namespace {

TEST(StripGeometry, CellsHitTestsAndHeights) {
    EXPECT_EQ((StripGeometry{0, 400}.Height()), 0);
    const StripGeometry two{2, 400};
    EXPECT_EQ(two.Height(), 375);
    EXPECT_FALSE(two.Scrolls());
    EXPECT_EQ(two.Cell(1), QRect(0, 189, 186, 186));
    EXPECT_EQ(two.IndexAt(185), 0);
    EXPECT_EQ(two.IndexAt(187), -1);
    EXPECT_EQ(two.IndexAt(189), 1);
    EXPECT_EQ(two.IndexAt(375), -1);
    EXPECT_EQ(two.IndexAt(-1), -1);
}

TEST(StripGeometry, FramesGoToTheNearestGap) {
    const StripGeometry five{5, 400};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(five.InsertionAt(five.Cell(i).center().y() - 3), i);
        EXPECT_EQ(five.InsertionAt(five.Cell(i).center().y() + 3), i + 1);
        EXPECT_EQ(five.InsertionAt(five.InsertionY(i)), i);
    }
    EXPECT_EQ(five.InsertionAt(-500), 0);
    EXPECT_EQ(five.InsertionAt(5000), 5);
}

TEST(StripGeometry, ScrollsAsTheListChanges) {
    const StripGeometry ten{10, 400};
    EXPECT_TRUE(ten.Scrolls());
    EXPECT_EQ(ten.FurthestOffset(), 1887 - 400);
    EXPECT_EQ(ten.OffsetAfterRebuild(9, 0), ten.FurthestOffset());
    EXPECT_EQ(ten.OffsetAfterRebuild(10, 300), 300);
    EXPECT_EQ(ten.OffsetAfterRebuild(11, 300), 300);
    EXPECT_EQ(ten.OffsetAfterRebuild(11, 2076 - 400), ten.FurthestOffset());
    EXPECT_EQ((StripGeometry{2, 400}.OffsetAfterRebuild(10, 900)), 0);
    // A moved frame stays in view with a neighbour on the side it goes to.
    for (const auto offset :
         {&StripGeometry::OffsetAfterMoveUp, &StripGeometry::OffsetAfterMoveDown}) {
        for (int index = 0; index < ten.frames - 1; ++index) {
            const int top = (ten.*offset)(index);
            const bool byCommand = offset == &StripGeometry::OffsetAfterMoveUp || index > 0;
            if (byCommand) {
                EXPECT_LE(top, ten.Cell(index).top() + 1) << index;
                EXPECT_GE(top + 400, ten.Cell(index).bottom()) << index;
            }
        }
    }
}

}  // namespace
}  // namespace lumirra
