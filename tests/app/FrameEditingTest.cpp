#include <QAction>
#include <QClipboard>
#include <QDoubleSpinBox>
#include <QGuiApplication>
#include <QMenu>
#include <QProcess>
#include <QTest>
#include <cmath>
#include <stdexcept>

#include "WindowFixture.h"
#include "app/dialogs/NearDuplicatesDialog.h"
#include "project/edits/FrameEdits.h"
#include "sources/FrameFiles.h"
#include "views/panel/FrameView.h"
#include "views/strip/ScrollViewFrames.h"

namespace lumirra {
namespace {

/// The window with frames of plain greys, whose levels tell them apart.
class FrameEditing : public WindowTest {
  protected:
    void SetUp() override {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        Strip().setFocus();
    }
    Project& TheProject() { return window.CurrentProject(); }
    const FrameList& Frames() { return TheProject().State().frames; }
    ScrollViewFrames& Strip() { return Find<ScrollViewFrames>("scrollViewFrames"); }
    QAction& Action(const char* name) { return *window.findChild<QAction*>(QLatin1String(name)); }
    void Trigger(const char* action) { Action(action).trigger(); }
    void AddGreys(const QList<int>& levels, const std::shared_ptr<const FrameOrigin>& origin = {}) {
        QList<Frame> frames;
        for (const int level : levels) {
            QImage picture(40, 30, QImage::Format_RGBA8888);
            picture.fill(QColor(level, level, level));
            const QString path = *TheProject().Store().Claim();
            ASSERT_TRUE(StoreFrame(picture, path));
            frames.append(TheProject().Store().Adopt(path, picture.size(), origin));
        }
        TheProject().Apply(edits::AppendFrames(TheProject().State(), frames));
    }
    void Select(const QList<int>& indices) {
        TheProject().Follow(WithNoneSelected(TheProject().State()));
        for (const int index : indices) {
            TheProject().Follow(WithFrameClicked(TheProject().State(), index, true));
        }
    }
    /// The levels of all frames; a delay of its own behind ":", a selected one with "*".
    QString Shown() {
        QStringList shown;
        for (int i = 0; i < Frames().Count(); ++i) {
            const Frame& frame = Frames().At(i);
            shown.append(QString::number(QImage(frame.Path()).pixelColor(1, 1).red()) +
                         (frame.delay ? QStringLiteral(":%1").arg(*frame.delay) : QString()) +
                         (Frames().IsSelected(i) ? QStringLiteral("*") : QString()));
        }
        return shown.join(QLatin1Char(' '));
    }
    void TypeDelay(const QString& text) {
        Trigger("actionFrameDelay");
        auto& field = Find<QLineEdit>("fieldFrameDelay");
        QTest::keyClick(&field, Qt::Key_Delete);
        QTest::keyClicks(&field, text);
        QTest::keyClick(&field, Qt::Key_Return);
    }
};

TEST_F(FrameEditing, DelaysAreTypedShownAndSummed) {
    EXPECT_FALSE(Enabled("fieldFrameDelay"));
    AddGreys({10, 20, 30});
    auto& field = Find<QLineEdit>("fieldFrameDelay");
    EXPECT_EQ(field.placeholderText(), QStringLiteral("0.1"));
    EXPECT_EQ(TextOf("labelFramesTotal"), QStringLiteral("0.30 s in all"));
    Select({2});
    TypeDelay(QStringLiteral("2"));
    EXPECT_EQ(Shown(), QStringLiteral("10 20 30:200*"));
    EXPECT_EQ(Strip().Badge(2), QStringLiteral("2 s"));
    EXPECT_TRUE(Strip().hasFocus()) << "the arrows go on from there";
    EXPECT_TRUE(Strip().Badge(1).isEmpty());
    EXPECT_EQ(TextOf("labelFramesTotal"), QStringLiteral("2.20 s in all"));
    Select({0, 2});
    EXPECT_EQ(field.text() + field.placeholderText(), QStringLiteral("several"));
    TypeDelay(QStringLiteral("0,25"));
    EXPECT_EQ(Shown(), QStringLiteral("10:25* 20 30:25*"));
    EXPECT_EQ(field.text(), QStringLiteral("0.25"));
    EXPECT_EQ(Strip().Caption(2), QStringLiteral("3 · 0.35 s"));
    Type("textFieldFrameDelay", QStringLiteral("0.5"));
    EXPECT_EQ(Strip().Caption(2), QStringLiteral("3 · 0.75 s")) << "the others follow the setting";
    for (const char* wrong : {"x", "0", "700", "-1", "nan"}) {
        TypeDelay(QString::fromLatin1(wrong));
        EXPECT_TRUE(dialogs.OnlyMessage().contains(QString::fromLatin1(wrong)));
    }
    EXPECT_EQ(Shown(), QStringLiteral("10:25* 20 30:25*"));
    Trigger("actionFrameDelay");
    QTest::keyClicks(&field, QStringLiteral("9"));
    TheProject().Follow(WithSelectionTo(TheProject().State(), 0));
    EXPECT_EQ(field.text(), QStringLiteral("9")) << "what is being typed stays";
    Select({0, 2});
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_EQ(field.text(), QStringLiteral("0.25"));
    EXPECT_EQ(Frames().SelectedIds().size(), 2) << "Escape is the field's";
    TypeDelay(QString());
    EXPECT_EQ(Shown(), QStringLiteral("10* 20 30*"));
    Trigger("actionUndo");
    Trigger("actionUndo");  // the setting
    EXPECT_EQ(Shown(), QStringLiteral("10:25* 20 30:25*"));

    dialogs.numbers = {2.0, std::nullopt, 100.0};
    Trigger("actionChangeSpeed");
    EXPECT_EQ(Shown(), QStringLiteral("10:13* 20 30:12*"));
    Trigger("actionChangeSpeed");
    Trigger("actionChangeSpeed");
    EXPECT_TRUE(dialogs.OnlyMessage().contains(QStringLiteral("less than 0.01 s")));
    EXPECT_EQ(Shown(), QStringLiteral("10:13* 20 30:12*"));
    EXPECT_EQ(TheProject().UndoLabel(), QStringLiteral("Change Speed"));
}

TEST_F(FrameEditing, FramesAreCutCopiedPastedAndMovedByKeys) {
    AddGreys({10, 20, 30, 40});
    EXPECT_FALSE(Action("actionPasteFrames").isEnabled() || Action("actionCutFrames").isEnabled());
    Select({0, 2});
    QTest::keyClick(&Strip(), Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(Shown(), QStringLiteral("20 40*"));
    QTest::keyClick(&Strip(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Shown(), QStringLiteral("20 40 10* 30*"));
    Select({0});
    QTest::keyClick(&Strip(), Qt::Key_C, Qt::ControlModifier);
    Select({3});
    QTest::keyClick(&Strip(), Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(&Strip(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Shown(), QStringLiteral("20 40 10 30 20 20*"));
    Select({4, 5});
    QTest::keyClick(&Strip(), Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(&Strip(), Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(&Strip(), Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Shown(), QStringLiteral("20 40 10 20* 20* 30"));
    EXPECT_EQ(TheProject().UndoLabel(), QStringLiteral("Move Frames Down"));

    // In a text field the same keys are the text's.
    auto& field = Find<QLineEdit>("fieldFrameDelay");
    QGuiApplication::clipboard()->setText(QStringLiteral("1.5"));
    Trigger("actionFrameDelay");
    const QString before = Shown();
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field.text(), QStringLiteral("1.5"));
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("1.5"));
    EXPECT_EQ(Shown(), before);
    QTest::keyClick(&field, Qt::Key_Escape);

    const auto files = QDir(folder.path()).entryList({QStringLiteral("*.png")}).size();
    EXPECT_EQ(files, 8) << "copies share their files";
    window.CleanTemporaryFiles();
    EXPECT_TRUE(QDir(folder.path()).entryList({QStringLiteral("*.png")}).isEmpty());
    EXPECT_FALSE(Action("actionPasteFrames").isEnabled());
}

TEST_F(FrameEditing, FramesAreDraggedInOneStep) {
    AddGreys({10, 20, 30, 40});
    Strip().resize(204, 2000);
    Select({0, 1});
    const auto at = [&](int index) { return Strip().CellRect(index).center(); };
    QTest::mousePress(Strip().viewport(), Qt::LeftButton, {}, at(1));
    QTest::mouseMove(Strip().viewport(), at(2));
    QTest::mouseMove(Strip().viewport(), at(2) + QPoint(0, 20));
    QTest::mouseRelease(Strip().viewport(), Qt::LeftButton, {}, at(2) + QPoint(0, 20));
    EXPECT_EQ(Shown(), QStringLiteral("30 10* 20* 40"));
    EXPECT_EQ(TheProject().UndoLabel(), QStringLiteral("Move Frames"));
    Strip().resize(204, 200);
    Strip().ScrollTo(Strip().Geometry().FurthestOffset());
    Trigger("actionUndo");
    EXPECT_EQ(Shown(), QStringLiteral("10* 20* 30 40"));
    EXPECT_TRUE(Strip().viewport()->rect().contains(Strip().CellRect(Frames().Tag())))
        << "what comes back can be seen";
    window.DisableAllControls();
    QTest::mousePress(Strip().viewport(), Qt::LeftButton, {}, at(1));
    QTest::mouseMove(Strip().viewport(), at(3));
    EXPECT_FALSE(Strip().Insertion()) << "not while everything is locked";
    window.RefreshControlStates();
}

TEST_F(FrameEditing, FramesThatAreNotNeededGo) {
    AddGreys({10, 10, 11, 60, 61, 10});
    dialogs.numbers = {3.0, std::nullopt};
    Trigger("actionKeepEveryNth");
    EXPECT_EQ(Shown(), QStringLiteral("10 60"));
    Trigger("actionUndo");
    Trigger("actionKeepEveryNth");
    EXPECT_EQ(Frames().Count(), 6) << "cancelled";

    const auto dialog = [&] { return window.findChild<NearDuplicatesDialog*>(); };
    const auto button = [&](const char* text) -> QPushButton& {
        for (QPushButton* candidate : dialog()->findChildren<QPushButton*>()) {
            if (candidate->text().contains(QLatin1String(text))) {
                return *candidate;
            }
        }
        throw std::runtime_error(text);
    };
    const auto says = [&](const char* words) {
        return QTest::qWaitFor([&] {
            for (const QLabel* label : dialog()->findChildren<QLabel*>()) {
                if (label->text() == QLatin1String(words)) {
                    return true;
                }
            }
            return false;
        });
    };
    Trigger("actionRemoveNearDuplicates");
    ASSERT_NE(dialog(), nullptr);
    EXPECT_FALSE(button("Remove").isEnabled()) << "not before the frames were read";
    ASSERT_TRUE(says("3 of 6 frames will be removed."));
    auto& threshold = *dialog()->findChild<QDoubleSpinBox*>();
    threshold.setValue(0);
    EXPECT_TRUE(says("1 of 6 frames will be removed."));
    threshold.setValue(1);
    button("Remove").click();
    EXPECT_EQ(Shown(), QStringLiteral("10:30 60:20 10"));
    Trigger("actionUndo");
    EXPECT_EQ(Shown(), QStringLiteral("10 10 11 60 61 10"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Select({4, 5});
    Trigger("actionRemoveNearDuplicates");
    ASSERT_TRUE(says("No frame looks like the one before it."));
    EXPECT_FALSE(button("Remove").isEnabled());
    button("Cancel").click();
    EXPECT_EQ(Frames().Count(), 6);
}

TEST_F(FrameEditing, AFrameIsShownLargeUntilAnythingMoves) {
    AddGreys({10, 200});
    auto& view = Find<FrameView>("imageViewFrame");
    EXPECT_FALSE(view.isVisible() || Action("actionShowFrame").isEnabled());
    const auto shows = [&](int level) {
        return QTest::qWaitFor([&] {
            return view.isVisible() && !view.Image().isNull() &&
                   view.Image().pixelColor(1, 1).red() == level;
        });
    };
    Select({1});
    auto& panel = *view.parentWidget();
    const auto invitations = [&] {
        int shown = 0;
        for (const QPushButton* button : panel.findChildren<QPushButton*>()) {
            shown += button->isVisible() ? 1 : 0;
        }
        return shown;
    };
    EXPECT_EQ(invitations(), 2) << "no source is open";
    Trigger("actionShowFrame");
    ASSERT_TRUE(shows(200));
    EXPECT_EQ(invitations(), 0);
    EXPECT_EQ(view.geometry(), panel.rect());
    TheProject().Follow(WithFrameClicked(TheProject().State(), 0, false));
    ASSERT_TRUE(shows(10)) << "another one is shown in its place";
    EXPECT_TRUE(view.Hint().contains(QStringLiteral("Frame 1")));
    QTest::keyClick(&Strip(), Qt::Key_Escape);
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(invitations(), 2);
    EXPECT_EQ(Frames().SelectedIds().size(), 1) << "the selection is left to the next Escape";
    Trigger("actionShowFrame");
    ASSERT_TRUE(shows(10));
    Edit("sliderBrightness", 0.5);
    EXPECT_FALSE(view.isVisible());
    Trigger("actionShowFrame");
    ASSERT_TRUE(shows(10));
    Press("buttonRemoveSelectedFrame");
    ASSERT_TRUE(shows(200)) << "the next one is selected";
    QFile::remove(Frames().At(0).Path());
    Trigger("actionShowFrame");
    Trigger("actionShowFrame");
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.isVisible(); }));
    EXPECT_FALSE(view.Problem().isEmpty());
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_FALSE(view.isVisible());
}

TEST_F(FrameEditing, ADoubleClickGoesToTheFramesPlace) {
    const QString clip = Media("counter-30fps-bframes.mp4");
    AddGreys({10});
    const auto from = [](FrameOrigin origin) {
        return std::make_shared<const FrameOrigin>(std::move(origin));
    };
    AddGreys({20}, from({clip, true, 0.5, nullptr}));
    AddGreys({30}, from({Media("photo.jpg"), false, 0, nullptr}));
    Strip().resize(204, 2000);
    const auto open = [&](int index) {
        const QPoint at = Strip().CellRect(index).center();
        QTest::mouseClick(Strip().viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(Strip().viewport(), Qt::LeftButton, {}, at);
    };
    Strip().ScrollTo(0);
    open(0);
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("It is not known where this frame came from."));
    open(1);
    EXPECT_EQ(
        dialogs.OnlyMessage(),
        QStringLiteral("This frame came from “counter-30fps-bframes.mp4”, which is not open."));
    EXPECT_TRUE(TheProject().State().source.IsEmpty()) << "nothing is opened";
    OpenVideo(clip);
    open(1);
    Settle();
    EXPECT_EQ(TheProject().State().source.position, 0.5F);
    EXPECT_EQ(CounterIn(Picture()), 45);
    EXPECT_EQ(ValueOf("sliderVideoPosition"), 0.5F);
    OpenImages({Media("photo-grey.png"), Media("photo.jpg")});
    open(2);
    Settle();
    EXPECT_EQ(TheProject().State().source.currentImageNumber, 1);
    open(1);
    dialogs.OnlyMessage();
    EXPECT_EQ(TheProject().UndoLabel(), QStringLiteral("Open Pictures")) << "no step";

    // The menu has every command for frames, as the Edit menu has.
    Q_EMIT Strip().MenuWanted(window.mapToGlobal(QPoint(50, 200)));
    auto* menu = window.findChild<QMenu*>(QStringLiteral("menuFrame"));
    ASSERT_NE(menu, nullptr);
    QStringList missing;
    for (const QAction* action : window.findChild<QMenu*>(QStringLiteral("menuEdit"))->actions()) {
        if (action->objectName().contains(QLatin1String("Frame")) &&
            !menu->actions().contains(action)) {
            missing.append(action->objectName());
        }
    }
    EXPECT_TRUE(missing.isEmpty()) << missing.join(QLatin1Char(' ')).toStdString();
    menu->close();
}

class Looping : public FrameEditing {
  protected:
    void Run(const char* action, double number) {
        dialogs.numbers.push_back(number);
        Trigger(action);
        ASSERT_TRUE(QTest::qWaitFor(
            [this] { return window.RunningJob() == BackgroundJob::Kind::None; }, 60000));
    }
    QString Status() { return TextOf("labelAddFramesStatus"); }
};

/// 50 pictures a second that come back after 1.7 s, but for what the encoder makes of them.
TEST_F(Looping, TheMarkersOfAVideoAreSetToItsLoop) {
    const QString clip = folder.filePath(QStringLiteral("pendulum.mp4"));
    ASSERT_EQ(QProcess::execute(
                  QStringLiteral("ffmpeg"),
                  {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-f"),
                   QStringLiteral("lavfi"), QStringLiteral("-i"),
                   QStringLiteral("color=gray:s=160x120:r=50:d=6,geq=lum='40+150*exp(-pow(X-80-"
                                  "60*sin(2*PI*T/1.7),2)/200)*(Y/120)':cb=128:cr='128+40*cos(2*PI*"
                                  "T/1.7)'"),
                   QStringLiteral("-pix_fmt"), QStringLiteral("yuv444p"), QStringLiteral("-crf"),
                   QStringLiteral("12"), clip}),
              0);
    OpenVideo(clip);
    Run("actionFindLoop", 0.8);
    EXPECT_TRUE(Status().startsWith(QStringLiteral("Loop of 1.70 s"))) << qPrintable(Status());
    const Source source = TheProject().State().source;
    const double first = std::floor(static_cast<double>(source.startPosition) * 300);
    const double last = std::floor(static_cast<double>(source.endPosition) * 300);
    EXPECT_EQ(last - first + 1, 85) << "1.7 s of 50 pictures a second, the end included";
    TheProject().Undo();
    EXPECT_EQ(TheProject().State().source.endPosition, 1.0F);

    Run("actionFindLoop", 7);
    EXPECT_EQ(dialogs.OnlyMessage(),
              QStringLiteral("There are too few pictures for a loop of that length."));
    EXPECT_EQ(TheProject().State().source.endPosition, 1.0F);
}

TEST_F(Looping, FramesOutsideOfTheLoopGoAndEndsFade) {
    AddGreys({0, 250, 40, 90, 140, 40, 90, 200});
    Run("actionFindLoop", 0.3);
    EXPECT_EQ(Shown(), QStringLiteral("90 140 40"));
    EXPECT_TRUE(Status().startsWith(QStringLiteral("Loop of 0.30 s"))) << qPrintable(Status());
    TheProject().Undo();
    EXPECT_EQ(Frames().Count(), 8);

    const QStringList before = window.State().frames.Paths();
    Run("actionCrossFadeEnds", 2);
    ASSERT_EQ(Frames().Count(), 6);
    EXPECT_EQ(Frames().Paths().first(4), before.mid(2, 4));
    // A third and two thirds of the way from 90 and 200 to 0 and 250.
    EXPECT_EQ(Shown(), QStringLiteral("40 90 140 40 60 233"));
    TheProject().Undo();
    EXPECT_EQ(window.State().frames.Paths(), before);

    Run("actionCrossFadeEnds", 5);
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("There are too few frames for that."));
    ASSERT_TRUE(QFile::remove(before[7]));
    for (const char* const action : {"actionCrossFadeEnds", "actionFindLoop"}) {
        Run(action, 1);
        EXPECT_TRUE(dialogs.OnlyMessage().contains(QFileInfo(before[7]).fileName())) << action;
    }
    EXPECT_EQ(window.State().frames.Paths(), before);
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("*.png")}).size(), 2 * (8 + 2) - 1)
        << "only what can still be redone is beside the frames";
}

}  // namespace
}  // namespace lumirra
