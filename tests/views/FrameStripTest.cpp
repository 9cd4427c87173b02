#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "views/Theme.h"
#include "views/strip/ScrollViewFrames.h"

namespace lumirra {
namespace {

using Geometry = StripGeometry;

class FrameStrip : public testing::Test {
  protected:
    void SetUp() override {
        strip.resize(Geometry::cellWidth + 18, 406);  // 400 of viewport
        strip.show();
    }

    /// A thumbnail file of one colour.
    QString Thumbnail(int number, const QColor& color, const QSize& size = QSize(372, 209)) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        const QString path = folder.filePath(QStringLiteral("frame%1_small.png").arg(number));
        EXPECT_TRUE(image.save(path));
        return path;
    }
    QStringList Thumbnails(int count) {
        QStringList paths;
        for (int i = 0; i < count; ++i) {
            paths.append(Thumbnail(i, QColor::fromHsv(i * 37 % 360, 255, 200)));
        }
        return paths;
    }
    bool Loads(int index) {
        QElapsedTimer clock;
        clock.start();
        while (strip.Thumbnail(index) == nullptr && clock.elapsed() < 10000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        return strip.Thumbnail(index) != nullptr;
    }
    QImage Look() { return strip.viewport()->grab().toImage(); }
    QColor At(const QImage& look, const QPoint& point) {
        return look.pixelColor(point * look.devicePixelRatio());
    }
    QPoint Middle(int index) { return strip.CellRect(index).center(); }
    void Click(int index) {
        QTest::mouseClick(strip.viewport(), Qt::LeftButton, {}, Middle(index));
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers held = {}) { QTest::keyClick(&strip, key, held); }
    int LastClicked() { return clicks.isEmpty() ? -1 : clicks.last().at(0).toInt(); }

    QTemporaryDir folder;
    ScrollViewFrames strip;
    QSignalSpy clicks{&strip, &ScrollViewFrames::UpdateSelectionScrollViewFrames};
};

TEST_F(FrameStrip, OnlyVisibleThumbnailsAreReadAndARebuildKeepsThem) {
    QStringList paths = Thumbnails(40);
    strip.Rebuild(paths);
    strip.ScrollTo(0);
    Look();
    ASSERT_TRUE(Loads(2));
    QTest::qWait(50);
    EXPECT_EQ(strip.Thumbnail(10), nullptr);
    EXPECT_EQ(strip.Thumbnail(39), nullptr);
    const QImage* read = strip.Thumbnail(1);
    EXPECT_EQ(read->size(), QSize(186, 105) * strip.devicePixelRatio());

    const QColor color = At(Look(), Middle(1));
    EXPECT_EQ(color.rgb(), QColor::fromHsv(37, 255, 200).rgb());
    EXPECT_NE(At(Look(), strip.CellRect(1).topLeft() + QPoint(90, 20)), color) << "beside it";
    paths.removeFirst();
    strip.Rebuild(paths);
    EXPECT_EQ(strip.Thumbnail(0), read) << "the same picture, not read again";

    strip.ScrollTo(strip.Geometry().FurthestOffset());
    Look();
    EXPECT_TRUE(Loads(38));
}

TEST_F(FrameStrip, PicturesThatCannotBeReadLeaveAPlaceholderUntilTheyCan) {
    QStringList paths = Thumbnails(2);
    QFile text(paths[1]);
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("no picture");
    text.close();
    paths.append(folder.filePath(QStringLiteral("missing_small.png")));
    strip.resize(strip.width(), 800);
    strip.Rebuild(paths);
    const QImage waiting = Look();
    ASSERT_TRUE(Loads(1) && Loads(2));
    EXPECT_TRUE(strip.Thumbnail(1)->isNull());
    EXPECT_TRUE(strip.Thumbnail(2)->isNull());
    const QRect cell = strip.CellRect(2);
    EXPECT_NE(Look().copy(cell), waiting.copy(cell)) << "the placeholder";
    EXPECT_EQ(Look().copy(cell), Look().copy(strip.CellRect(1)));
    Thumbnail(1, Qt::red);
    strip.Rebuild(paths);
    Look();
    QTest::qWait(50);
    ASSERT_TRUE(Loads(1));
    EXPECT_EQ(At(Look(), Middle(1)), QColor(Qt::red));
}

TEST_F(FrameStrip, BordersTellWhatIsSelected) {
    strip.Rebuild(Thumbnails(2));
    strip.ScrollTo(0);
    ASSERT_TRUE((Look(), Loads(0)));
    const QColor blue = QColor::fromRgbF(0.19F, 0.54F, 0.99F);
    const auto edge = [&](int index, int depth) {
        return At(Look(), strip.CellRect(index).topLeft() + QPoint(depth, 60)).rgb();
    };
    EXPECT_NE(edge(0, 0), QColor(Qt::white).rgb()) << "no border before the selection is known";
    strip.ShowSelection({false, true}, 1);
    EXPECT_EQ(edge(0, 2), QColor(Qt::white).rgb());
    EXPECT_NE(edge(0, 3), QColor(Qt::white).rgb());
    EXPECT_EQ(edge(1, 0), blue.rgb());
    EXPECT_EQ(edge(1, 3), blue.rgb());
    EXPECT_NE(edge(1, 4), blue.rgb());
    strip.ShowSelection({true, true, true}, 7);
    EXPECT_EQ(edge(0, 3), blue.rgb());
    EXPECT_EQ(edge(1, 3), blue.rgb());
    strip.ShowSelection({}, -1);
    EXPECT_EQ(edge(0, 0), QColor(Qt::white).rgb());
}

TEST_F(FrameStrip, MouseAndKeyboardSayWhichFrameIsMeant) {
    strip.SetCaption([](int index) { return QStringLiteral("no. %1").arg(index); });
    strip.Rebuild(Thumbnails(10));
    strip.ScrollTo(0);
    Click(1);
    EXPECT_EQ(LastClicked(), 1);
    QTest::mouseClick(strip.viewport(), Qt::LeftButton, {},
                      strip.CellRect(0).bottomLeft() + QPoint(90, 2));
    QTest::mouseClick(strip.viewport(), Qt::RightButton, {}, Middle(0));
    EXPECT_EQ(clicks.size(), 1) << "neither between the cells nor with the other button";

    strip.activateWindow();
    strip.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&strip));
    const QImage before = Look().copy(strip.CellRect(2));
    Key(Qt::Key_Down);
    EXPECT_EQ(LastClicked(), 2);
    EXPECT_NE(Look().copy(strip.CellRect(2)), before) << "where the keyboard is can be seen";
    EXPECT_TRUE(QRect(QPoint(), strip.viewport()->size()).contains(strip.CellRect(2)));
    Key(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(LastClicked(), 2) << "only goes there";
    Key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(LastClicked(), 3);
    Key(Qt::Key_End);
    EXPECT_EQ(LastClicked(), 9);
    EXPECT_EQ(strip.Offset(), strip.Geometry().FurthestOffset());
    Key(Qt::Key_Down);
    EXPECT_EQ(LastClicked(), 9);
    Key(Qt::Key_PageUp);
    EXPECT_EQ(LastClicked(), 7);
    Key(Qt::Key_Home);
    EXPECT_EQ(LastClicked(), 0);
    Key(Qt::Key_Return);
    EXPECT_EQ(clicks.size(), 8);

    Click(1);
    QTest::mouseMove(strip.viewport(), Middle(0));
    const QImage hovered = Look().copy(strip.CellRect(0));
    QTest::mouseMove(strip.viewport(), Middle(1));
    EXPECT_NE(Look().copy(strip.CellRect(0)), hovered) << "number and time are shown on hover";
    strip.Rebuild({});
    Key(Qt::Key_Down);
    EXPECT_EQ(clicks.size(), 9);
}

TEST_F(FrameStrip, SelectedFramesAreDraggedBetweenOthers) {
    QSignalSpy dragged(&strip, &ScrollViewFrames::FramesDragged);
    strip.Rebuild(Thumbnails(10));
    strip.ScrollTo(0);
    strip.ShowSelection({true, true}, -1);
    Look();
    ASSERT_TRUE(Loads(0));
    const auto mouse = [&](QEvent::Type type, const QPoint& at) {
        const bool moves = type == QEvent::MouseMove;
        QMouseEvent event(type, at, strip.viewport()->mapToGlobal(QPointF(at)),
                          moves ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        QApplication::sendEvent(strip.viewport(), &event);
    };
    const QPoint below = Middle(1) + QPoint(0, 40);
    mouse(QEvent::MouseButtonPress, Middle(0));
    EXPECT_TRUE(clicks.isEmpty()) << "they may be about to be dragged";
    mouse(QEvent::MouseMove, Middle(0) + QPoint(1, 1));
    EXPECT_FALSE(strip.Insertion());
    const QImage before = Look();
    mouse(QEvent::MouseMove, below);
    EXPECT_EQ(strip.Insertion(), 2);
    const int gap = strip.CellRect(2).top() - 2;
    EXPECT_NE(At(Look(), {90, gap}), At(before, {90, gap})) << "a line shows the place";
    EXPECT_NE(At(Look(), Middle(0)), At(before, Middle(0))) << "and what is moved";
    mouse(QEvent::MouseButtonRelease, below);
    ASSERT_EQ(dragged.size(), 1);
    EXPECT_EQ(dragged[0][0], 2);
    EXPECT_TRUE(clicks.isEmpty());

    mouse(QEvent::MouseButtonPress, Middle(0));
    mouse(QEvent::MouseMove, {90, 399});
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return strip.Offset() == strip.Geometry().FurthestOffset(); }));
    EXPECT_EQ(strip.Insertion(), 10) << "it scrolled to the end meanwhile";
    mouse(QEvent::MouseMove, {90, -30});
    ASSERT_TRUE(QTest::qWaitFor([&] { return strip.Insertion() == 0; }));
    Key(Qt::Key_Escape);
    EXPECT_FALSE(strip.Insertion());
    mouse(QEvent::MouseButtonRelease, below);
    mouse(QEvent::MouseButtonPress, Middle(1));
    mouse(QEvent::MouseMove, below);
    strip.AllowDragging(false);
    mouse(QEvent::MouseButtonRelease, below);
    strip.AllowDragging(true);
    mouse(QEvent::MouseButtonPress, Middle(1));
    mouse(QEvent::MouseMove, below);
    strip.Rebuild(Thumbnails(9));
    mouse(QEvent::MouseButtonRelease, below);
    EXPECT_EQ(dragged.size(), 1) << "none of these was brought to its end";
    EXPECT_TRUE(clicks.isEmpty());

    strip.ScrollTo(0);
    strip.ShowSelection({true, true}, -1);
    Click(1);
    EXPECT_EQ(LastClicked(), 1) << "a click on one of several selected is one when it is let go";
    strip.ShowSelection({}, -1);
    mouse(QEvent::MouseButtonPress, Middle(0));
    mouse(QEvent::MouseMove, below);
    EXPECT_FALSE(strip.Insertion()) << "what is not selected stays";
    mouse(QEvent::MouseButtonRelease, below);
}

TEST_F(FrameStrip, AFrameIsOpenedByTwoClicksAndHasAMenu) {
    QSignalSpy opened(&strip, &ScrollViewFrames::FrameOpened);
    QSignalSpy menus(&strip, &ScrollViewFrames::MenuWanted);
    strip.Rebuild(Thumbnails(3));
    strip.ScrollTo(0);
    strip.ShowSelection({true, false, false}, -1);
    QTest::mouseDClick(strip.viewport(), Qt::LeftButton, {}, Middle(1));
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened[0][0], 1);
    QTest::mouseDClick(strip.viewport(), Qt::LeftButton, Qt::ShiftModifier, Middle(1));
    EXPECT_EQ(opened.size(), 1);
    clicks.clear();
    const auto ask = [&](QContextMenuEvent::Reason reason, const QPoint& at) {
        QContextMenuEvent event(reason, at, strip.viewport()->mapToGlobal(at));
        QApplication::sendEvent(strip.viewport(), &event);
    };
    ask(QContextMenuEvent::Mouse, Middle(0));
    EXPECT_TRUE(clicks.isEmpty()) << "of all that are selected";
    ask(QContextMenuEvent::Mouse, Middle(1));
    EXPECT_EQ(LastClicked(), 1);
    ask(QContextMenuEvent::Keyboard, {});
    ask(QContextMenuEvent::Mouse, strip.CellRect(0).bottomLeft() + QPoint(90, 2));
    ASSERT_EQ(menus.size(), 3);
    EXPECT_EQ(menus[2][0].toPoint(), strip.viewport()->mapToGlobal(Middle(1)));
}

TEST_F(FrameStrip, AssistiveTechnologySeesAListOfFrames) {
    strip.SetCaption([](int index) { return QString::number(index + 1); });
    strip.SetBadge([](int index) { return index == 2 ? QStringLiteral("2 s") : QString(); });
    strip.Rebuild(Thumbnails(10));
    strip.ScrollTo(0);
    strip.ShowSelection({false, true}, 1);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&strip);
    ASSERT_EQ(list->role(), QAccessible::List);
    ASSERT_EQ(list->childCount(), 10);
    QAccessibleInterface* frame = list->child(1);
    EXPECT_EQ(frame->text(QAccessible::Name), QStringLiteral("Frame 2"));
    EXPECT_EQ(list->child(2)->text(QAccessible::Name), QStringLiteral("Frame 3, shown for 2 s"));
    EXPECT_TRUE(frame->state().selected);
    EXPECT_FALSE(frame->state().offscreen);
    EXPECT_TRUE(list->child(9)->state().offscreen);
    EXPECT_EQ(list->indexOfChild(frame), 1);
    const QPoint middle = frame->rect().center();
    EXPECT_EQ(strip.viewport()->mapFromGlobal(middle), Middle(1));
    EXPECT_EQ(list->childAt(middle.x(), middle.y()), frame);
    frame->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(LastClicked(), 1);
    QSignalSpy menus(&strip, &ScrollViewFrames::MenuWanted);
    list->child(2)->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_EQ(LastClicked(), 2);
    EXPECT_EQ(menus.size(), 1);
    strip.Rebuild({});
    EXPECT_FALSE(frame->isValid());
    EXPECT_TRUE(frame->text(QAccessible::Name).isEmpty());
    EXPECT_EQ(list->child(0), nullptr);
}

TEST_F(FrameStrip, TheWheelGoesToWhatSurroundsAStripThatFits) {
    const auto wheelIsTaken = [&] {
        QWheelEvent event(QPointF(50, 50), strip.viewport()->mapToGlobal(QPointF(50, 50)), {},
                          QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(strip.viewport(), &event);
        return event.isAccepted();
    };
    strip.Rebuild(Thumbnails(2));
    EXPECT_FALSE(strip.scrollingEnabled);
    EXPECT_FALSE(wheelIsTaken());
    strip.Rebuild(Thumbnails(10));
    EXPECT_TRUE(strip.scrollingEnabled);
    EXPECT_EQ(strip.Offset(), strip.Geometry().FurthestOffset()) << "what was added is seen";
    strip.ScrollTo(0);
    EXPECT_TRUE(wheelIsTaken());
    EXPECT_EQ(strip.Offset(), Geometry::pitch) << "one cell a notch";
    strip.resize(204, 2000);
    EXPECT_FALSE(strip.scrollingEnabled);
    EXPECT_EQ(strip.Offset(), 0);
}

}  // namespace
}  // namespace lumirra
