#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QProcess>
#include <QProgressBar>

#include "GenerateFixture.h"
#include "support/FullDisk.h"
#include "views/controls/Spinner.h"

namespace lumirra {
namespace {

/// Complete or not.
QStringList GifsIn(const QString& folder) {
    return QDir(folder).entryList({QStringLiteral("*.gif*")}, QDir::Files);
}

const char* const kSizeQuestion =
    "The selected frames have different dimensions. Do you want to automatically crop and resize "
    "all frames to match the smallest one?";

TEST_F(GenerateStory, NothingToGenerateNothingToPlayNothingToSave) {
    Press("buttonGeneratePreview");
    EXPECT_EQ(dialogs.OnlyMessage(),
              QStringLiteral("Please add at least one frame and try again."));
    EXPECT_TRUE(Enabled("buttonGeneratePreview"));
    Press("buttonPlayStopPreview");
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Please generate a GIF first."));
    Press("buttonSaveGif");
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Please generate a GIF first."));
    EXPECT_TRUE(dialogs.saved.isEmpty());
}

TEST_F(GenerateStory, GeneratesPlaysAndStops) {
    AddFrames(12);
    Type("textFieldFrameDelay", QStringLiteral("0.05"));
    Press("buttonGeneratePreview");
    EXPECT_TRUE(Busy());
    EXPECT_FALSE(Enabled("buttonGeneratePreview"));
    EXPECT_FALSE(Enabled("buttonSaveGif"));
    EXPECT_EQ(ButtonText("buttonGeneratePreview"), QStringLiteral("Please Wait..."));
    EXPECT_TRUE(View().Image().isNull());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Busy() && !View().IsLoading(); }, 60000));

    EXPECT_TRUE(dialogs.messages.isEmpty()) << "equal sizes: no question";
    EXPECT_EQ(ButtonText("buttonGeneratePreview"), QStringLiteral("Generate Preview"));
    EXPECT_TRUE(Enabled("buttonGeneratePreview"));
    EXPECT_FALSE(Find<Spinner>("progressGifPreview").IsRunning());
    EXPECT_FALSE(Shown("progressGenerate"));
    EXPECT_FALSE(View().IsAnimating());
    EXPECT_EQ(View().Image().size(), QSize(64, 48));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !TextOf("labelGifInfo").isEmpty(); }));
    EXPECT_TRUE(
        TextOf("labelGifInfo").startsWith(QStringLiteral("12 frames · 64 × 48 px · 0.6 s · ")))
        << qPrintable(TextOf("labelGifInfo"));

    Press("buttonPlayStopPreview");
    EXPECT_TRUE(View().IsAnimating());
    EXPECT_EQ(ButtonText("buttonPlayStopPreview"), QStringLiteral("Stop"));
    EXPECT_FALSE(window.State().updating) << "the source's picture is left alone";
    ASSERT_TRUE(QTest::qWaitFor([this] { return View().ShownPictures() > 2; }));
    const QImage first = [this] {
        Press("buttonPlayStopPreview");
        EXPECT_EQ(ButtonText("buttonPlayStopPreview"), QStringLiteral("Play"));
        EXPECT_TRUE(QTest::qWaitFor([this] { return !View().IsLoading(); }));
        return View().Image();
    }();
    Press("buttonPlayStopPreview");
    ASSERT_TRUE(QTest::qWaitFor([this] { return View().ShownPictures() > 2; }));
    EXPECT_NE(View().Image(), first);
    window.ResetPlay();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !View().IsLoading(); }));
    EXPECT_EQ(View().Image(), first);

    // Once more while it plays.
    Press("buttonPlayStopPreview");
    Press("buttonGeneratePreview");
    EXPECT_FALSE(View().IsAnimating());
    EXPECT_TRUE(View().Image().isNull());
    EXPECT_EQ(ButtonText("buttonPlayStopPreview"), QStringLiteral("Play"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Busy() && !View().IsLoading(); }, 60000));
    EXPECT_EQ(View().Image(), first);

    // A new project has no GIF, but the file stays until the end.
    window.OnFileNew();
    EXPECT_TRUE(View().Image().isNull());
    EXPECT_EQ(TextOf("labelGifInfo"), QString());
    EXPECT_TRUE(QFile::exists(Gif()));
    Press("buttonSaveGif");
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Please generate a GIF first."));
}

TEST_F(GenerateStory, PlayRefreshesThePictureWhenThereIsALoopCount) {
    AddFrames(2);
    Generate();
    Press("buttonPlayStopPreview");
    EXPECT_FALSE(window.State().updating);
    Press("buttonPlayStopPreview");
    Type("textFieldLoopCount", QStringLiteral("2"));
    Press("buttonPlayStopPreview");
    EXPECT_TRUE(window.State().updating);
    Settle();
}

TEST_F(GenerateStory, FramesOfDifferentSizesAreAskedAboutOnce) {
    AddFrames(2, {64, 48});
    AddFrames(2, {40, 40});
    const struct {
        Dialogs::Answer answer;
        QSize size;
    } cases[] = {{Dialogs::SecondButton, {64, 48}}, {Dialogs::FirstButton, {40, 40}}};
    for (const auto& one : cases) {
        dialogs.answers = {one.answer};
        Generate();
        EXPECT_EQ(dialogs.OnlyMessage(), QString::fromUtf8(kSizeQuestion));
        EXPECT_EQ(SizeOf(Gif()), one.size);
        EXPECT_EQ(View().Image().size(), one.size);
    }
    EXPECT_EQ(dialogs.buttons.last(), (QStringList{QStringLiteral("Yes"), QStringLiteral("No")}));
}

TEST_F(GenerateStory, NewQuitAndCloseEndAGenerationAtOnceAndLeaveNoHalfFile) {
    AddFrames(250, {320, 240});
    QFile old(Gif());
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    Press("buttonGeneratePreview");
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return Find<QProgressBar>("progressGenerate").value() > 0; }, 60000));
    EXPECT_TRUE(Shown("progressGenerate"));
    EXPECT_TRUE(TextOf("labelGifInfo").contains(QStringLiteral(" of 250")));
    ASSERT_TRUE(Busy()) << "more frames are needed here";
    window.OnFileNew();
    EXPECT_FALSE(Busy());
    EXPECT_TRUE(dialogs.messages.isEmpty());
    EXPECT_EQ(BytesOf(Gif()), "old");
    EXPECT_EQ(GifsIn(folder.path()), QStringList{QStringLiteral("tempGif.gif")});
    EXPECT_TRUE(Enabled("buttonGeneratePreview"));
    EXPECT_EQ(ButtonText("buttonGeneratePreview"), QStringLiteral("Generate Preview"));

    AddFrames(80, {320, 240});
    window.show();
    Press("buttonGeneratePreview");
    QTest::qWait(30);
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(Busy());
    EXPECT_TRUE(GifsIn(folder.path()).isEmpty());
}

/// While the question stands nothing is written; the window may go away meanwhile.
TEST_F(GenerateStory, TheWindowIsClosedWhileTheQuestionStands) {
    AddFrames(1, {64, 48});
    AddFrames(1, {40, 40});
    window.show();
    dialogs.answers = {Dialogs::FirstButton};
    dialogs.whileAsked = [this] { EXPECT_TRUE(window.close()); };
    Press("buttonGeneratePreview");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Busy(); }, 20000));
    QTest::qWait(50);
    EXPECT_TRUE(GifsIn(folder.path()).isEmpty());
}

TEST_F(GenerateStory, FramesThatVanishedAreLeftOutAndNoneAtAllIsAFailure) {
    AddFrames(4);
    const QStringList paths = window.State().frames.Paths();
    ASSERT_TRUE(QFile::remove(paths[2]));
    dialogs.answers = {Dialogs::SecondButton};  // unreadable counts as a size of its own
    Generate();
    EXPECT_EQ(dialogs.OnlyMessage(), QString::fromUtf8(kSizeQuestion));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !TextOf("labelGifInfo").isEmpty(); }));
    EXPECT_TRUE(TextOf("labelGifInfo").startsWith(QStringLiteral("3 frames · 1 unreadable")))
        << qPrintable(TextOf("labelGifInfo"));

    for (const QString& path : paths) {
        QFile::remove(path);
    }
    Generate();
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Could not generate the preview"));
    EXPECT_TRUE(View().Image().isNull());
    EXPECT_TRUE(View().HasPictureObject());
    EXPECT_FALSE(QFile::exists(Gif())) << "the old one must not pass for the new one";
    EXPECT_TRUE(Enabled("buttonGeneratePreview"));
    dialogs.saves.push_back(folder.filePath(QStringLiteral("out.gif")));
    EXPECT_NE(Printed([this] { Press("buttonSaveGif"); }).find("Save failed: "), std::string::npos);
    EXPECT_TRUE(dialogs.messages.isEmpty());
}

TEST_F(GenerateStory, TwoWindowsGenerateSideBySide) {
    const QTemporaryDir otherFolder;
    ScriptedDialogs script;
    ViewController other(theme, script, otherFolder.path());
    AddFrames(30, {160, 120});
    other.OpenFiles({pictures.filePath(QStringLiteral("1.png"))});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !other.State().updating; }, 20000));
    other.OnAddFrame();
    ASSERT_TRUE(QTest::qWaitFor([&] { return other.State().frames.Count() == 1; }, 20000));
    Press("buttonGeneratePreview");
    other.OnGeneratePreview();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return !Busy() && other.RunningJob() == BackgroundJob::Kind::None; }, 60000));
    EXPECT_TRUE(other.close());
    EXPECT_TRUE(GifsIn(otherFolder.path()).isEmpty());
    EXPECT_EQ(SizeOf(Gif()), QSize(160, 120));
}

TEST_F(GenerateStory, AFullDiskLeavesNothingHalf) {
    AddNoise(4, {150, 150});
    {
        const FullDisk full(20'000);
        Generate();
    }
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Could not generate the preview"));
    EXPECT_FALSE(View().text().isEmpty());
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("*.gif*")}, QDir::Files),
              QStringList());

    Generate();
    QFile old(pictures.filePath(QStringLiteral("old.gif")));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    dialogs.saves.push_back(old.fileName());
    const std::string line = Printed([this] {
        const FullDisk full(20'000);
        Press("buttonSaveGif");
    });
    EXPECT_EQ(line.rfind("Save failed: ", 0), 0U) << line;
    EXPECT_EQ(BytesOf(old.fileName()), "old");
    EXPECT_EQ(QDir(pictures.path()).entryList({QStringLiteral("*.gif*")}, QDir::Files),
              QStringList{QStringLiteral("old.gif")});
    EXPECT_TRUE(dialogs.messages.isEmpty());
}

TEST_F(GenerateStory, WithoutItsFolderTheProgramSaysSo) {
    AddFrames(2);
    ASSERT_TRUE(QDir(folder.path()).removeRecursively());
    Press("buttonGeneratePreview");
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Could not generate the preview."));
    EXPECT_FALSE(Busy());
    EXPECT_TRUE(Enabled("buttonGeneratePreview"));
}

/// The window and the command line are one engine: the same profile gives the same bytes.
TEST_F(GenerateStory, AProfileGivesTheSameGifOnTheCommandLine) {
    const QString clip = Media("grain.mp4");
    OpenVideo(clip);
    Press("radioFixedNumberOfFrames");
    Type("textFieldFixedNumberOfFrames", QStringLiteral("6"));
    Edit("sliderSaturation", 1.4);
    Press("checkVignette");
    Type("textFieldCustomCropOriginX", QStringLiteral("10"));
    Type("textFieldCustomCropWidth", QStringLiteral("80"));
    Type("textFieldResizeTo", QStringLiteral("40"));
    Type("textFieldFrameDelay", QStringLiteral("0.2"));
    Press("checkCustomColorCount");
    Edit("sliderCustomColorCount", 24);
    Type("textFieldLoopCount", QStringLiteral("3"));
    Settle();
    Press("buttonAddFramesAutomatically");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !Busy(); }, 60000));
    ASSERT_EQ(window.State().frames.Count(), 6);
    Generate();

    const QString profile = pictures.filePath(QStringLiteral("p.lmr"));
    dialogs.saves.push_back(profile);
    window.OnSaveProfile();
    const QString out = pictures.filePath(QStringLiteral("out.gif"));
    QProcess program;
    program.start(QStringLiteral(LUMIRRA_CLI),
                  {QStringLiteral("--profile"), profile, clip, QStringLiteral("-o"), out});
    ASSERT_TRUE(program.waitForFinished(60000));
    ASSERT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
    EXPECT_GT(BytesOf(out).size(), 10'000);
    EXPECT_EQ(BytesOf(out), BytesOf(Gif()));
}

TEST_F(GenerateStory, QualitySizeLimitAndRepeatingReachTheFile) {
    AddNoise(6, {150, 150});
    Generate();
    const QByteArray fine = BytesOf(Gif());
    ASSERT_GT(fine.size(), 110'000);
    EXPECT_FALSE(fine.contains("NETSCAPE"));
    Press("checkRepeatForever");
    Press("checkMaxSize");
    Find<QDoubleSpinBox>("fieldMaxSize").setValue(0.1);
    Generate();
    EXPECT_TRUE(dialogs.messages.isEmpty());
    EXPECT_LE(QFile(Gif()).size(), 100'000);
    EXPECT_TRUE(BytesOf(Gif()).contains("NETSCAPE"));

    AddNoise(14, {150, 150});
    Generate();
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Could not generate the preview"));
    EXPECT_TRUE(View().text().contains(QStringLiteral("100 KB")))
        << "why: " << qPrintable(View().text());
}

}  // namespace
}  // namespace lumirra
