#include <gtest/gtest.h>

#include "frames/FrameList.h"
#include "frames/StripGeometry.h"

namespace lumirra {
namespace {

QStringList Names(const char* letters) {
    QStringList names;
    for (const char* c = letters; *c != '\0'; ++c) {
        names.append(QString(QLatin1Char(*c)));
    }
    return names;
}

FrameList ListOf(const char* letters) {
    FrameList list;
    for (const QString& name : Names(letters)) {
        list.Append(name);
    }
    return list;
}

TEST(FrameList, ClicksSelectOneAndCommandClicksAddAndTakeOut) {
    FrameList list = ListOf("abc");
    list.Click(1, false);
    EXPECT_EQ(list.Selected(), Names("b"));
    EXPECT_TRUE(list.CanMove());
    list.Click(2, true);
    EXPECT_EQ(list.Selected(), Names("bc"));
    EXPECT_FALSE(list.CanMove());
    list.Click(2, true);
    EXPECT_EQ(list.Selected(), Names("b"));
    EXPECT_TRUE(list.CanMove());
    // The frame last clicked moves, not the selected one.
    EXPECT_TRUE(list.MoveUp());
    EXPECT_EQ(list.Paths(), Names("acb"));
    EXPECT_EQ(list.Tag(), 1);
    list.Append(QStringLiteral("d"));
    list.Refresh(false);
    EXPECT_EQ(list.Selected(), Names("c"));
}

TEST(FrameList, MovesStopAtBothEndsAndBadIndicesChangeNothing) {
    FrameList list = ListOf("abc");
    EXPECT_FALSE(list.MoveUp());
    EXPECT_FALSE(list.MoveDown());
    list.Click(0, false);
    EXPECT_FALSE(list.MoveUp());
    EXPECT_TRUE(list.MoveDown());
    EXPECT_TRUE(list.MoveDown());
    EXPECT_FALSE(list.MoveDown());
    EXPECT_EQ(list.Paths(), Names("bca"));
    for (const int index : {-1, 3}) {
        list.Click(index, true);
        EXPECT_EQ(list.Selected(), Names("a"));
        EXPECT_EQ(list.Tag(), 2);
    }
}

TEST(FrameList, RemovingGivesBackWhatLeft) {
    FrameList list = ListOf("abcd");
    list.Click(2, false);
    list.Click(1, true);
    EXPECT_EQ(list.RemoveSelected(), Names("cb"));
    EXPECT_EQ(list.Paths(), Names("ad"));
    EXPECT_EQ(list.Tag(), -1);
    EXPECT_TRUE(list.RemoveSelected().isEmpty());
    list.Click(0, false);
    EXPECT_EQ(list.RemoveAll(), Names("ad"));
    EXPECT_EQ(list.Count(), 0);
    EXPECT_TRUE(list.Selected().isEmpty());
}

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
