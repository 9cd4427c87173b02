#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTest>

#include "WindowFixture.h"
#include "imaging/CropScale.h"
#include "project/edits/FrameEdits.h"
#include "project/recovery/SavedSession.h"
#include "settings/SettingsRecords.h"
#include "sources/FrameFiles.h"
#include "sources/StillReader.h"
#include "support/FullDisk.h"
#include "views/strip/ScrollViewFrames.h"

namespace lumirra {
namespace {

class FrameStory : public WindowTest {
  protected:
    QStringList Paths() { return window.State().frames.Paths(); }
    QStringList Selected() { return window.State().frames.Selected(); }
    ScrollViewFrames& Strip() { return Find<ScrollViewFrames>("scrollViewFrames"); }
    bool Busy() { return window.RunningJob() != BackgroundJob::Kind::None; }

    template <typename Condition>
    bool WaitFor(Condition condition) {
        QElapsedTimer clock;
        clock.start();
        while (!condition() && clock.elapsed() < 30000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        return condition();
    }
    /// Presses Add Frame and waits for the frame.
    void AddFrame() {
        const auto before = Paths().size();
        Press("buttonAddFrame");
        ASSERT_TRUE(WaitFor([&] { return Paths().size() == before + 1; }));
    }
    void AddFrameAt(double position) {
        Edit("sliderVideoPosition", position);
        Settle();
        AddFrame();
    }
    void AddFrames() {
        Press("buttonAddFramesAutomatically");
        ASSERT_TRUE(WaitFor([&] { return !Busy(); }));
    }
    void FixedNumber(int frames) {
        Press("radioFixedNumberOfFrames");
        Type("textFieldFixedNumberOfFrames", QString::number(frames));
    }
    /// Four frames that show the numbers 0, 9, 18, 27.
    void FourFrames() {
        OpenVideo(Media("counter-30fps-bframes.mp4"));
        for (const double position : {0.0, 0.1, 0.2, 0.3}) {
            AddFrameAt(position);
        }
    }
    void Click(int index, Qt::KeyboardModifiers held = {}) {
        QTest::mouseClick(Strip().viewport(), Qt::LeftButton, held,
                          Strip().CellRect(index).center());
    }
    QList<int> Numbers() {
        QList<int> numbers;
        const QStringList paths = Paths();
        for (const QString& path : paths) {
            numbers.append(CounterIn(QImage(path)));
        }
        return numbers;
    }
    /// But for the session's index, which comes a moment after the frames.
    QStringList FilesLeft() {
        QStringList files = QDir(folder.path()).entryList(QDir::Files);
        files.removeIf([](const QString& name) { return name.startsWith(SessionFileName()); });
        return files;
    }
};

TEST_F(FrameStory, AFrameIsThePictureShownCroppedAndResized) {
    Press("buttonAddFrame");
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Please select a video first."));
    EXPECT_TRUE(FilesLeft().isEmpty());

    OpenVideo(Media("counter-30fps-bframes.mp4"));  // 320 x 180
    Type("textFieldCustomCropWidth", QStringLiteral("50"));
    Settle();
    Type("textFieldDimensionsWidth", QStringLiteral("80"));
    const CaptureSettings settings = CaptureSettingsOf(window.Values());
    const QImage expected = ImageTools::CropAndResizeCapturedFrame(Picture(), settings);
    AddFrame();
    const QString path = Paths().first();
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith(QStringLiteral("frame")));
    EXPECT_EQ(QFileInfo(path).path(), folder.path());
    EXPECT_EQ(QImage(path).size(), QSize(80, 90));
    EXPECT_EQ(QImage(path).convertToFormat(QImage::Format_RGBA8888),
              expected.convertToFormat(QImage::Format_RGBA8888));
    EXPECT_EQ(QImage(ThumbnailPath(path)).size(), QSize(372, 418));
    EXPECT_EQ(TextOf("labelFrameCount"), QStringLiteral("1"));
    EXPECT_TRUE(Selected().isEmpty()) << "no frame was clicked";

    OpenImages({Media("photo-alpha.png")});
    AddFrame();
    EXPECT_TRUE(QImage(Paths().last()).hasAlphaChannel());
    const QImage shown = QImage(Paths().last());
    bool transparent = false;
    for (int y = 0; y < shown.height() && !transparent; ++y) {
        for (int x = 0; x < shown.width() && !transparent; ++x) {
            transparent = shown.pixelColor(x, y).alpha() < 255;
        }
    }
    EXPECT_TRUE(transparent);
}

TEST_F(FrameStory, CapturesInQuickSuccessionAllArriveWithNamesOfTheirOwn) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    for (int i = 0; i < 8; ++i) {
        Press("buttonAddFrame");
    }
    EXPECT_TRUE(Enabled("buttonAddFrame")) << "nothing is locked meanwhile";
    EXPECT_TRUE(Enabled("sliderBrightness"));
    ASSERT_TRUE(WaitFor([&] { return Paths().size() == 8; }));
    const QStringList eight = Paths();
    EXPECT_EQ(QSet<QString>(eight.begin(), eight.end()).size(), 8);
    EXPECT_EQ(FilesLeft().size(), 16);

    Edit("sliderVideoPosition", 0.5);
    ASSERT_TRUE(window.State().updating);
    Press("buttonAddFrame");
    Settle();
    QTest::qWait(50);
    EXPECT_EQ(Paths().size(), 8) << "not while the picture is about to change";

    Press("buttonPlayVideo");
    ASSERT_TRUE(window.IsPlaying());
    AddFrame();
    EXPECT_FALSE(window.IsPlaying());
    EXPECT_EQ(CounterIn(QImage(Paths().last())), 45) << "the picture at the slider";
}

TEST_F(FrameStory, CapturesThatBelongToAnOldProjectAreDropped) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    Press("buttonAddFrame");
    Press("buttonAddFrame");
    window.OnFileNew();
    QTest::qWait(200);
    EXPECT_TRUE(Paths().isEmpty());
    EXPECT_TRUE(FilesLeft().isEmpty()) << FilesLeft().join(QLatin1Char(' ')).toStdString();
}

TEST_F(FrameStory, ClicksSelectAndMoveTheFrameLastClicked) {
    FourFrames();
    EXPECT_EQ(Numbers(), (QList<int>{0, 9, 18, 27}));
    EXPECT_FALSE(Enabled("buttonMoveUp"));
    Strip().resize(204, 2000);
    Click(1);
    EXPECT_EQ(Selected(), QStringList{Paths()[1]});
    EXPECT_EQ(Strip().Look(1), CellLook::Selected);
    EXPECT_EQ(Strip().Look(2), CellLook::NotSelected);
    EXPECT_TRUE(Enabled("buttonMoveUp") && Enabled("buttonMoveDown"));

    Click(2, Qt::ControlModifier);
    EXPECT_EQ(Selected(), (QStringList{Paths()[1], Paths()[2]}));
    EXPECT_FALSE(Enabled("buttonMoveUp") || Enabled("buttonMoveDown"));
    Click(2, Qt::ControlModifier);
    EXPECT_TRUE(Enabled("buttonMoveUp"));
    EXPECT_EQ(Strip().Look(1), CellLook::Selected);
    EXPECT_EQ(Strip().Look(2), CellLook::NotSelected);
    QTest::keyClick(&window, Qt::Key_Shift);  // Ctrl is no longer held
    Press("buttonMoveUp");
    EXPECT_EQ(Numbers(), (QList<int>{0, 18, 9, 27})) << "the frame last clicked moves";
    EXPECT_EQ(Selected(), QStringList{Paths()[1]}) << "and is then the selection";
    Press("buttonMoveUp");
    Press("buttonMoveUp");
    EXPECT_EQ(Numbers(), (QList<int>{18, 0, 9, 27})) << "at the top it stays";
    for (int i = 0; i < 5; ++i) {
        Press("buttonMoveDown");
    }
    EXPECT_EQ(Numbers(), (QList<int>{0, 9, 27, 18}));
    EXPECT_EQ(Strip().Look(3), CellLook::Selected);
    EXPECT_FALSE(window.IsModified()) << "frames are no part of a profile";
    window.UpdateSelectionScrollViewFrames(9);
    window.UpdateSelectionScrollViewFrames(-1);
    EXPECT_EQ(Selected(), QStringList{Paths()[3]}) << "no such frame";
}

TEST_F(FrameStory, RemovingTakesFilesAndAsksOnlyForAll) {
    FourFrames();
    Strip().resize(204, 2000);
    const QStringList before = Paths();
    Click(1);
    Click(2, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_Shift);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    Strip().setFocus();
    QTest::keyClick(&Strip(), Qt::Key_Delete);
    EXPECT_EQ(Paths(), (QStringList{before[0], before[3]}));
    EXPECT_EQ(Selected(), QStringList{before[3]}) << "the next one";
    EXPECT_EQ(Strip().Current(), 1);
    EXPECT_EQ(FilesLeft().size(), 8) << "they can come back";
    window.CurrentProject().Undo();
    EXPECT_EQ(Paths(), before);
    EXPECT_EQ(Strip().Look(1), CellLook::Selected);
    EXPECT_EQ(Strip().Look(3), CellLook::NotSelected);
    window.CurrentProject().Redo();
    EXPECT_EQ(TextOf("labelFrameCount"), QStringLiteral("2"));
    QTest::keyClick(&Strip(), Qt::Key_Escape);
    EXPECT_TRUE(Selected().isEmpty());
    Press("buttonRemoveSelectedFrame");
    EXPECT_EQ(Paths().size(), 2) << "nothing is selected";

    QFile::remove(before[0]);  // behind the program's back
    dialogs.answers = {Dialogs::SecondButton, Dialogs::FirstButton};
    Press("buttonRemoveAllFrames");
    EXPECT_EQ(dialogs.OnlyMessage(),
              QStringLiteral("Are you sure you want to remove all the frames from the list?"));
    EXPECT_EQ(Paths().size(), 2);
    Press("buttonRemoveAllFrames");
    dialogs.messages.clear();
    EXPECT_TRUE(Paths().isEmpty());
    Press("buttonRemoveAllFrames");
    EXPECT_TRUE(dialogs.messages.isEmpty()) << "nothing to ask about";
    testing::internal::CaptureStdout();
    window.CleanTemporaryFiles();
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(printed.rfind("Remove failed: " + before[0].toStdString(), 0), 0U) << printed;
    EXPECT_TRUE(FilesLeft().isEmpty());
}

TEST_F(FrameStory, RangesAreSelectedDuplicatedAndTurnedRound) {
    FourFrames();
    Strip().resize(204, 2000);
    const auto trigger = [&](const char* action) {
        window.findChild<QAction*>(QLatin1String(action))->trigger();
    };
    Click(3);
    Click(1, Qt::ShiftModifier);
    EXPECT_EQ(Selected().size(), 3);
    QTest::keyClick(&Strip(), Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(Selected().size(), 4) << "from the frame that was clicked first";
    Click(1);
    Click(2, Qt::ShiftModifier);
    trigger("actionReverseFrames");
    EXPECT_EQ(Numbers(), (QList<int>{0, 18, 9, 27}));
    EXPECT_EQ(Selected().size(), 2);
    trigger("actionDuplicateFrames");
    EXPECT_EQ(Numbers(), (QList<int>{0, 18, 9, 18, 9, 27}));
    EXPECT_EQ(Strip().Look(3), CellLook::Selected);
    EXPECT_EQ(Strip().Look(2), CellLook::NotSelected);
    QTest::keyClick(&Strip(), Qt::Key_Escape);
    trigger("actionForthAndBack");
    EXPECT_EQ(Numbers(), (QList<int>{0, 18, 9, 18, 9, 27, 9, 18, 9, 18}));
    EXPECT_EQ(FilesLeft().size(), 8) << "copies share their files";
    trigger("actionSelectAllFrames");
    Press("buttonRemoveSelectedFrame");
    EXPECT_TRUE(Paths().isEmpty());
    for (int i = 0; i < 4; ++i) {
        trigger("actionUndo");
    }
    EXPECT_EQ(Numbers(), (QList<int>{0, 9, 18, 27}));
    EXPECT_FALSE(window.IsModified());
}

TEST_F(FrameStory, AnExtractionFillsTheListWhileEverythingIsLocked) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    FixedNumber(4);
    EXPECT_EQ(TextOf("labelAddFramesStatus"), QStringLiteral("4 frames will be added"));
    Find<QComboBox>("comboPlayMode").setCurrentIndex(1);
    Q_EMIT Find<QComboBox>("comboPlayMode").activated(1);
    EXPECT_EQ(TextOf("labelAddFramesStatus"), QStringLiteral("7 frames will be added"));
    auto& bar = Find<QProgressBar>("progressAddFramesAutomatically");
    QSignalSpy moves(&bar, &QProgressBar::valueChanged);
    Press("buttonAddFramesAutomatically");
    ASSERT_EQ(window.RunningJob(), BackgroundJob::Kind::Extraction);
    auto& button = Find<QPushButton>("buttonAddFramesAutomatically");
    EXPECT_EQ(button.text(), QStringLiteral("Please Wait..."));
    for (const char* locked : {"buttonAddFramesAutomatically", "buttonAddFrame", "sliderHue",
                               "buttonSelectVideo", "buttonGeneratePreview"}) {
        EXPECT_FALSE(Enabled(locked)) << locked;
    }
    window.RefreshControlStates();
    EXPECT_FALSE(Enabled("buttonSaveGif")) << "not before the end";
    ASSERT_TRUE(WaitFor([&] { return !Busy(); }));

    EXPECT_EQ(Numbers(), (QList<int>{0, 30, 60, 89, 60, 30, 0}));
    QList<int> values;
    for (const QList<QVariant>& move : moves) {
        values.append(move.first().toInt());
    }
    EXPECT_EQ(values, (QList<int>{14, 28, 42, 57, 71, 85, 100, 0}));
    EXPECT_EQ(button.text(), QStringLiteral("Add Frames"));
    EXPECT_TRUE(Enabled("sliderHue") && Enabled("buttonAddFrame"));
    EXPECT_EQ(TextOf("labelAddFramesStatus"), QStringLiteral("7 frames added"));
    EXPECT_EQ(TextOf("labelFrameCount"), QStringLiteral("7"));
    EXPECT_EQ(FilesLeft().size(), 14);

    const QStringList first = Paths();
    FixedNumber(1);
    dialogs.answers = {Dialogs::SecondButton, Dialogs::FirstButton};
    AddFrames();
    EXPECT_EQ(dialogs.OnlyMessage(),
              QStringLiteral("You already have some frames in the list. Do you want to remove them "
                             "before adding the automatically generated frames?"));
    EXPECT_EQ(Paths().size(), 8);
    EXPECT_EQ(Paths().mid(0, 7), first);
    AddFrames();
    EXPECT_EQ(Paths().size(), 1);
    window.CurrentProject().Undo();
    EXPECT_EQ(Paths().size(), 8) << "a run with all it replaced is one step";
    window.CurrentProject().Undo();
    EXPECT_EQ(Paths(), first);
}

TEST_F(FrameStory, EveryPictureBecomesAFrameAndOneThatCannotBeReadIsLeftOut) {
    const QString gone = folder.filePath(QStringLiteral("gone.jpg"));
    ASSERT_TRUE(QFile::copy(Media("photo.jpg"), gone));
    const QString damaged = folder.filePath(QStringLiteral("damaged.png"));
    QFile text(damaged);
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("no picture");
    text.close();
    OpenImages({Media("photo.jpg"), gone, damaged, Media("photo-grey.png")});
    ASSERT_TRUE(QFile::remove(gone));
    Type("textFieldResizeTo", QStringLiteral("50"));
    Settle();
    EXPECT_EQ(TextOf("labelAddFramesStatus"), QStringLiteral("4 frames will be added"));
    AddFrames();
    ASSERT_EQ(Paths().size(), 2);
    const auto half = [](const char* name) {
        const QSize size = ReadStill(Media(name)).image.size();
        return QSize(qRound(size.width() * 0.5), qRound(size.height() * 0.5));
    };
    EXPECT_EQ(QImage(Paths()[0]).size(), half("photo.jpg"));
    EXPECT_EQ(QImage(Paths()[1]).size(), half("photo-grey.png"));
    EXPECT_TRUE(TextOf("labelAddFramesStatus").startsWith(QStringLiteral("2 frames added: ")));
    EXPECT_TRUE(dialogs.messages.isEmpty()) << "left out without a message";
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("frame*")}, QDir::Files).size(), 4);
}

TEST_F(FrameStory, NewAndCloseStopARunAtTheNextFrame) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    FixedNumber(5000);
    dialogs.answers = {Dialogs::SecondButton, Dialogs::FirstButton, Dialogs::FirstButton};
    Press("buttonAddFramesAutomatically");
    ASSERT_TRUE(WaitFor([&] { return Paths().size() > 2; }));
    window.OnFileNew();  // refused: the run goes on
    EXPECT_TRUE(Busy());
    window.OnFileNew();
    EXPECT_FALSE(Busy());
    EXPECT_TRUE(Paths().isEmpty());
    EXPECT_EQ(Find<QPushButton>("buttonAddFramesAutomatically").text(),
              QStringLiteral("Add Frames"));
    EXPECT_TRUE(Enabled("buttonSelectVideo"));
    const auto files = FilesLeft().size();
    QTest::qWait(50);
    EXPECT_EQ(FilesLeft().size(), files);
    window.CurrentProject().Undo();
    EXPECT_EQ(files, 2 * Paths().size()) << "all that was stored can come back, and nothing else";
    window.CurrentProject().Redo();

    OpenVideo(Media("counter-30fps-bframes.mp4"));
    FixedNumber(5000);
    Press("buttonAddFramesAutomatically");
    ASSERT_TRUE(WaitFor([&] { return Paths().size() > 2; }));
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(Busy());
    EXPECT_EQ(FilesLeft().size(), 2 * Paths().size()) << "they can be gone on with";
}

TEST_F(FrameStory, FramesAreRefreshedWithThePresentLook) {
    const QString clip = folder.filePath(QStringLiteral("clip.mp4"));
    const QString photo = folder.filePath(QStringLiteral("photo.png"));
    ASSERT_TRUE(QFile::copy(Media("counter-30fps-bframes.mp4"), clip) &&
                QFile::copy(Media("photo-alpha.png"), photo));
    OpenVideo(clip);
    AddFrameAt(0.3);
    AddFrameAt(0.5);
    OpenImages({photo});
    AddFrame();
    const QStringList before = Paths();
    const QList<QImage> old{QImage(before[0]), QImage(before[1]), QImage(before[2])};
    Type("textFieldResizeTo", QStringLiteral("50"));
    Edit("sliderSaturation", 0);
    Edit("sliderBrightness", 0.25);
    Settle();
    AddFrame();  // what the third has to look like
    const QImage present(Paths()[3]);
    Click(1);
    Click(2, Qt::ControlModifier);
    QAction& refresh = *window.findChild<QAction*>(QStringLiteral("actionRefreshFrames"));
    refresh.trigger();
    EXPECT_TRUE(Shown("buttonCancelJob"));
    ASSERT_TRUE(WaitFor([&] { return !Busy(); }));
    EXPECT_FALSE(Shown("buttonCancelJob"));
    EXPECT_EQ(TextOf("labelAddFramesStatus"), QStringLiteral("2 frames refreshed"));
    EXPECT_EQ(Paths()[0], before[0]);
    EXPECT_EQ(QImage(Paths()[2]), present);
    const QImage refreshed(Paths()[1]);
    EXPECT_EQ(refreshed.size(), old[1].size() / 2);
    EXPECT_EQ(CounterIn(refreshed), CounterIn(old[1]));
    EXPECT_TRUE(refreshed.pixelColor(5, 5).lightness() > old[1].pixelColor(10, 10).lightness());
    EXPECT_EQ(window.CurrentProject().State().frames.At(1).size, refreshed.size());
    EXPECT_EQ(Selected().size(), 2);
    window.CurrentProject().Undo();
    EXPECT_EQ(QImage(Paths()[1]), old[1]);
    window.CurrentProject().Redo();
    EXPECT_EQ(QImage(Paths()[1]), refreshed);

    // The video has gone: the picture alone follows.
    ASSERT_TRUE(QFile::remove(clip));
    Edit("sliderBrightness", 0);
    Settle();
    window.CurrentProject().Follow(WithNoneSelected(window.CurrentProject().State()));
    const QStringList stay = Paths();
    refresh.trigger();
    ASSERT_TRUE(WaitFor([&] { return !Busy(); }));
    EXPECT_TRUE(TextOf("labelAddFramesStatus").startsWith(QStringLiteral("2 frames refreshed: ")));
    EXPECT_EQ(Paths().first(2), stay.first(2));
    EXPECT_NE(QImage(Paths()[2]), present);
    EXPECT_EQ(QImage(Paths()[3]), QImage(Paths()[2]));
    EXPECT_EQ(FilesLeft().filter(QStringLiteral("frame")).size(), 2 * 7)
        << "each picture is rendered once";
}

TEST_F(FrameStory, ACancelledJobSaysWhatBecameOfIt) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    FixedNumber(5000);
    Press("buttonAddFramesAutomatically");
    // Enough of them for the second job to last longer than it takes to cancel it.
    ASSERT_TRUE(WaitFor([&] { return Paths().size() > 80; }));
    EXPECT_FALSE(Enabled("buttonAddFrame"));
    QTest::keyClick(&window, Qt::Key_Escape);
    ASSERT_TRUE(WaitFor([&] { return !Busy(); }));
    const auto added = Paths().size();
    EXPECT_EQ(TextOf("labelAddFramesStatus"),
              QStringLiteral("Cancelled: %1 frames added").arg(added));
    EXPECT_EQ(FilesLeft().size(), 2 * added);

    const QStringList before = Paths();
    window.findChild<QAction*>(QStringLiteral("actionRefreshFrames"))->trigger();
    Press("buttonCancelJob");
    ASSERT_TRUE(WaitFor([&] { return !Busy(); }));
    EXPECT_EQ(TextOf("labelAddFramesStatus"), QStringLiteral("Cancelled: no frame was changed"));
    EXPECT_EQ(Paths(), before);
    EXPECT_EQ(FilesLeft().size(), 2 * added);
    window.CurrentProject().Undo();
    EXPECT_TRUE(Paths().isEmpty());
}

TEST_F(FrameStory, AFolderThatIsGoneIsReportedAndNothingIsLost) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    AddFrame();
    const QString away = folder.path() + QStringLiteral("-away");
    ASSERT_TRUE(QDir().rename(folder.path(), away));
    Press("buttonAddFrame");
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Could not add frame."));
    FixedNumber(5);
    dialogs.answers = {Dialogs::SecondButton};
    AddFrames();
    EXPECT_TRUE(
        TextOf("labelAddFramesStatus").startsWith(QStringLiteral("No frames were added: ")));
    EXPECT_EQ(Paths().size(), 1);
    EXPECT_TRUE(Enabled("buttonAddFrame"));
    ASSERT_TRUE(QDir().rename(away, folder.path()));
    AddFrame();
    EXPECT_EQ(Paths().size(), 2);
}

TEST_F(FrameStory, ASourceThatVanishesEndsTheRunInWords) {
    const QString copy = folder.filePath(QStringLiteral("copy.mp4"));
    ASSERT_TRUE(QFile::copy(Media("counter-30fps-bframes.mp4"), copy));
    OpenVideo(copy);
    FixedNumber(3);
    ASSERT_TRUE(QFile::remove(copy));
    AddFrames();
    EXPECT_TRUE(Paths().isEmpty());
    EXPECT_TRUE(TextOf("labelAddFramesStatus").startsWith(QStringLiteral("No frames were added")));
    EXPECT_TRUE(Enabled("buttonAddFramesAutomatically"));
    EXPECT_TRUE(FilesLeft().isEmpty());
}

TEST_F(FrameStory, AFullDiskAddsNoFramesAndLeavesNoHalfOnes) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    FixedNumber(3);
    {
        const FullDisk full(3000);
        Press("buttonAddFrame");
        ASSERT_TRUE(WaitFor([&] { return !dialogs.messages.isEmpty(); }));
        AddFrames();
    }
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Could not add frame."));
    EXPECT_TRUE(
        TextOf("labelAddFramesStatus").startsWith(QStringLiteral("No frames were added: ")));
    EXPECT_TRUE(Paths().isEmpty());
    EXPECT_TRUE(FilesLeft().isEmpty()) << FilesLeft().join(QLatin1Char(' ')).toStdString();
    AddFrames();
    EXPECT_EQ(Paths().size(), 3);
}

TEST_F(FrameStory, ASourceThatIsReplacedDuringARunDoesNoHarm) {
    const QTemporaryDir elsewhere;
    const QString copy = elsewhere.filePath(QStringLiteral("copy.mp4"));
    ASSERT_TRUE(QFile::copy(Media("counter-30fps-bframes.mp4"), copy));
    ASSERT_TRUE(QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner));
    OpenVideo(copy);
    FixedNumber(90);
    Press("buttonAddFramesAutomatically");
    ASSERT_TRUE(WaitFor([&] { return Paths().size() > 2; }));
    QFile file(copy);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(QByteArray(5000, 'x'));
    file.close();
    ASSERT_TRUE(WaitFor([&] { return !Busy(); }));
    EXPECT_TRUE(Enabled("buttonAddFrame"));
    for (const QString& path : Paths()) {
        EXPECT_EQ(QImage(path).size(), QSize(320, 180));
    }
    EXPECT_EQ(FilesLeft().size(), 2 * Paths().size());
}

TEST_F(FrameStory, TwoWindowsDoNotMeet) {
    ScriptedDialogs otherDialogs;
    ViewController other(theme, otherDialogs, folder.path());
    other.OpenFiles({Media("counter-2997.mov")});
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    ASSERT_TRUE(WaitFor([&] { return !other.State().updating; }));
    FixedNumber(12);
    Press("buttonAddFramesAutomatically");
    other.OnAddFramesAutomatically();
    const auto idle = [](const ViewController& controller) {
        return controller.RunningJob() == BackgroundJob::Kind::None;
    };
    ASSERT_TRUE(WaitFor([&] { return idle(window) && idle(other); }));
    const QStringList theirs = other.State().frames.Paths();
    EXPECT_EQ(Paths().size(), 12);
    EXPECT_FALSE(theirs.isEmpty());
    EXPECT_EQ(FilesLeft().size(), 2 * (12 + theirs.size()));
    other.CleanTemporaryFiles();
    EXPECT_EQ(FilesLeft().size(), 2 * 12) << "closing one leaves the other's frames";
}

}  // namespace
}  // namespace lumirra
