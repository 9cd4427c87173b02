#include "GenerateFixture.h"

namespace lumirra {
namespace {

const char* const kRating =
    "If you enjoy using Lumirra, would you mind taking a moment to rate it? Thanks for your "
    "support!";

class SaveStory : public GenerateStory {
  protected:
    void SetUp() override {
        GenerateStory::SetUp();
        AddFrames(3);
        Generate();
    }
    std::string Save(const QString& path) {
        dialogs.saves.push_back(path);
        return Printed([this] { Press("buttonSaveGif"); });
    }
    static QString Choice() {
        return QSettings().value(QStringLiteral("ShowRateMessage")).toString();
    }
    QString Out(const char* name) const { return out.filePath(QString::fromLatin1(name)); }

    QTemporaryDir out;
};

TEST_F(SaveStory, WhatIsToBeReplacedAndIsNotThereIsTold) {
    const auto lines = [](const std::string& printed) {
        return std::count(printed.begin(), printed.end(), '\n');
    };
    ASSERT_TRUE(QFile::remove(Gif()));
    const std::string generated = Printed([this] { Generate(); });
    EXPECT_EQ(generated.rfind("Remove failed: " + Gif().toStdString(), 0), 0U) << generated;
    EXPECT_EQ(lines(generated), 1);
    EXPECT_EQ(Printed([this] { Generate(); }), "") << "it is there now";
    const std::string added = Printed([this] { AddFrames(2); });
    EXPECT_EQ(lines(added), 2) << added;
    EXPECT_NE(added.find("frame"), std::string::npos);
}

TEST_F(SaveStory, TheCopyIsWholeAndTheUserIsAskedOnTheSecondOccasion) {
    EXPECT_NE(Save(Out("a.gif")).find("Remove failed: "), std::string::npos);
    EXPECT_EQ(dialogs.saved.last().suggestedName, QStringLiteral("videoGif.gif"));
    EXPECT_EQ(dialogs.saved.last().extension, QStringLiteral("gif"));
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Gif saved successfully."));
    EXPECT_EQ(BytesOf(Out("a.gif")), BytesOf(Gif()));
    EXPECT_EQ(Choice(), QStringLiteral("Yes"));

    dialogs.answers = {Dialogs::SecondButton};
    EXPECT_EQ(Save(Out("a.gif")), "") << "over an existing file";
    ASSERT_EQ(dialogs.messages.size(), 2);
    EXPECT_EQ(dialogs.messages.last(), QString::fromUtf8(kRating));
    EXPECT_EQ(dialogs.buttons.last(),
              (QStringList{QStringLiteral("Yes, Rate Lumirra"), QStringLiteral("Remind me later"),
                           QStringLiteral("No, Thanks")}));
    EXPECT_EQ(Choice(), QStringLiteral("Yes"));
    dialogs.messages.clear();
    Save(Out("b.gif"));
    dialogs.OnlyMessage();  // once in a run
    EXPECT_TRUE(dialogs.addresses.isEmpty());

    dialogs.saves.push_back(std::nullopt);
    Press("buttonSaveGif");
    EXPECT_TRUE(dialogs.messages.isEmpty());
}

TEST_F(SaveStory, AnAnswerCountsForEver) {
    const struct {
        QVariant kept;
        Dialogs::Answer answer;
        bool asked;
        QString after;
        qsizetype opened;
        QUrl place = QUrl(QStringLiteral("https://example.org/rate"));  ///< none: nobody is asked
    } cases[] = {
        {QStringLiteral("Yes"), Dialogs::FirstButton, true, QStringLiteral("No"), 1},
        {QStringLiteral("Yes"), Dialogs::ThirdButton, true, QStringLiteral("No"), 0},
        {QStringLiteral("No"), Dialogs::FirstButton, false, QStringLiteral("No"), 0},
        {QStringLiteral("yes"), Dialogs::FirstButton, false, QStringLiteral("yes"), 0},
        {1, Dialogs::FirstButton, false, QStringLiteral("1"), 0},
        {QStringLiteral("Yes"), Dialogs::FirstButton, false, QStringLiteral("Yes"), 0, QUrl()},
    };
    const QString picture = pictures.filePath(QStringLiteral("1.png"));
    for (const auto& one : cases) {
        QSettings().setValue(QStringLiteral("ShowRateMessage"), one.kept);
        ScriptedDialogs script;
        ViewController other(theme, script, folder.path(), one.place);
        other.OpenFiles({picture});
        ASSERT_TRUE(QTest::qWaitFor([&] { return !other.State().updating; }, 20000));
        other.OnAddFrame();
        ASSERT_TRUE(QTest::qWaitFor([&] { return other.State().frames.Count() == 1; }, 20000));
        other.OnGeneratePreview();
        ASSERT_TRUE(QTest::qWaitFor([&] { return other.RunningJob() == BackgroundJob::Kind::None; },
                                    20000));
        script.answers = {one.answer};
        script.saves = {Out("c.gif")};
        Printed([&] { other.OnSaveGif(); });
        EXPECT_EQ(script.messages.contains(QString::fromUtf8(kRating)), one.asked);
        EXPECT_EQ(Choice(), one.after);
        EXPECT_EQ(script.addresses.size(), one.opened);
    }
}

TEST_F(SaveStory, WhatCannotBeSavedLeavesWhatWasThere) {
    // A folder in its place, a folder that is not there, the preview file gone.
    ASSERT_TRUE(QDir(out.path()).mkdir(QStringLiteral("folder.gif")));
    EXPECT_EQ(Save(Out("folder.gif")).rfind("Save failed: ", 0), 0U);
    EXPECT_NE(Save(Out("none/x.gif")).find("\nSave failed: "), std::string::npos);
    EXPECT_EQ(TextOf("labelGifInfo"),
              QStringLiteral("Could not write \"x.gif\": the folder does not exist."));
    Save(Out("kept.gif"));
    dialogs.messages.clear();
    const QByteArray kept = BytesOf(Out("kept.gif"));
    ASSERT_FALSE(kept.isEmpty());
    ASSERT_TRUE(QFile::remove(Gif()));
    const std::string line = Save(Out("kept.gif"));
    EXPECT_EQ(line.rfind("Save failed: ", 0), 0U);
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
    EXPECT_EQ(BytesOf(Out("kept.gif")), kept);
    EXPECT_TRUE(dialogs.messages.isEmpty());
    EXPECT_EQ(QDir(out.path()).entryList(QDir::Files), QStringList{QStringLiteral("kept.gif")});

    // Play still works on what is in memory, stop shows that the file is gone.
    Press("buttonPlayStopPreview");
    Press("buttonPlayStopPreview");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !View().IsLoading(); }));
    EXPECT_TRUE(View().Image().isNull());
}

}  // namespace
}  // namespace lumirra
