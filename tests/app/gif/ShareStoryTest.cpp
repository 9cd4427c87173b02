#include <QAction>
#include <QClipboard>
#include <QMimeData>
#include <QUrl>

#include "GenerateFixture.h"
#include "app/gif/GifCopy.h"
#include "support/FullDisk.h"

namespace lumirra {
namespace {

class ShareStory : public GenerateStory {
  protected:
    void SetUp() override {
        GenerateStory::SetUp();
        qputenv("TMPDIR", QFile::encodeName(temporary.path()));
    }
    void TearDown() override {
        QGuiApplication::clipboard()->clear();
        qunsetenv("TMPDIR");
        GenerateStory::TearDown();
    }
    QAction& Action(const char* name) {
        return *window.findChild<QAction*>(QString::fromLatin1(name));
    }
    const QMimeData& Copied() {
        Action("actionCopyGif").trigger();
        return *QGuiApplication::clipboard()->mimeData();
    }
    static QString FileIn(const QMimeData& data) {
        return data.urls().isEmpty() ? QString() : data.urls().first().toLocalFile();
    }

    QTemporaryDir temporary{QDir::tempPath() + QStringLiteral("/copy \u00e9 XXXXXX")};
};

TEST_F(ShareStory, ACopyIsAFileOfTheSaveNameThatStaysAsItWas) {
    EXPECT_FALSE(Action("actionCopyGif").isEnabled());
    AddFrames(3);
    EXPECT_FALSE(Action("actionCopyGif").isEnabled());
    Generate();
    EXPECT_TRUE(Action("actionCopyGif").isEnabled());
    const QByteArray first = BytesOf(Gif());

    const QMimeData& data = Copied();
    const QString file = FileIn(data);
    EXPECT_TRUE(file.startsWith(temporary.path())) << qPrintable(file);
    dialogs.saves.push_back(std::nullopt);
    Press("buttonSaveGif");
    EXPECT_EQ(QFileInfo(file).fileName(), dialogs.saved.last().suggestedName);
    EXPECT_EQ(BytesOf(file), first);
    EXPECT_EQ(data.data(QStringLiteral("image/gif")), first);
    const QByteArray address = data.data(QStringLiteral("text/uri-list")).trimmed();
    EXPECT_EQ(QUrl::fromEncoded(address).toLocalFile(), file);
    for (const char* flavour : {"x-special/gnome-copied-files", "x-special/mate-copied-files"}) {
        EXPECT_EQ(data.data(QString::fromLatin1(flavour)), "copy\n" + address);
    }
    EXPECT_EQ(data.data(QStringLiteral("application/x-kde-cutselection")), "0");
    EXPECT_EQ(FileIn(Copied()), file) << "the same GIF is the same file";

    AddFrames(2);
    Generate();
    EXPECT_EQ(BytesOf(file), first);
    const QString second = FileIn(Copied());
    EXPECT_NE(second, file);
    EXPECT_EQ(BytesOf(second), BytesOf(Gif()));
    EXPECT_EQ(BytesOf(file), first) << "may still be read by who was given it";

    window.OnFileNew();
    EXPECT_FALSE(Action("actionCopyGif").isEnabled());
    EXPECT_TRUE(QFile::exists(second)) << "the clipboard still offers it";
}

TEST_F(ShareStory, CopiesGoWithTheirLastHolder) {
    AddFrames(2);
    Generate();
    auto copy = GifCopy::Make(Gif(), QStringLiteral("a.gif"));
    ASSERT_TRUE(copy);
    std::unique_ptr<QMimeData> data = MimeDataOf(*copy);
    const QString file = FileIn(*data);
    copy = Failure{};
    EXPECT_EQ(data->data(QStringLiteral("image/gif")), BytesOf(Gif()));
    data.reset();
    EXPECT_FALSE(QFile::exists(QFileInfo(file).path()));
}

TEST_F(ShareStory, WithoutRoomItSaysSoAndTheClipboardStays) {
    AddNoise(3, {120, 120});
    Generate();
    QGuiApplication::clipboard()->setText(QStringLiteral("kept"));
    {
        const FullDisk full(20'000);
        Action("actionCopyGif").trigger();
    }
    EXPECT_TRUE(dialogs.OnlyMessage().contains(QStringLiteral("videoGif.gif")));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("kept"));
    EXPECT_TRUE(QDir(temporary.filePath(QStringLiteral("lumirra"))).isEmpty());
}

/// Only what the GIF depends on, and only as long as it differs.
TEST_F(ShareStory, AnOldGifSaysSo) {
    AddFrames(3);
    Type("textFieldFrameDelay", QStringLiteral("0.05"));
    Press("checkCustomColorCount");
    EXPECT_FALSE(Shown("labelGifStale"));
    Generate();
    EXPECT_FALSE(Shown("labelGifStale"));
    Edit("sliderContrast", 1.3);
    Type("textFieldFixedNumberOfFrames", QStringLiteral("7"));
    window.UpdateSelectionScrollViewFrames(1);
    EXPECT_FALSE(Shown("labelGifStale"));

    const std::pair<const char*, std::function<void()>> changes[] = {
        {"delay", [this] { Type("textFieldFrameDelay", QStringLiteral("0.07")); }},
        {"loops", [this] { Type("textFieldLoopCount", QStringLiteral("2")); }},
        {"repeating", [this] { Press("checkRepeatForever"); }},
        {"colours", [this] { Edit("sliderCustomColorCount", 12); }},
        {"quality", [this] { Edit("sliderQuality", 60); }},
        {"limit", [this] { Press("checkMaxSize"); }},
        {"order", [this] { Press("buttonMoveUp"); }},
        {"frames", [this] { Press("buttonRemoveSelectedFrame"); }}};
    for (const auto& [what, change] : changes) {
        change();
        EXPECT_TRUE(Shown("labelGifStale")) << what;
        Action("actionUndo").trigger();
        EXPECT_FALSE(Shown("labelGifStale")) << what;
        Action("actionRedo").trigger();
        EXPECT_TRUE(Shown("labelGifStale")) << what;
        Action("actionUndo").trigger();
    }
    Press("checkRepeatForever");
    Generate();
    Type("textFieldLoopCount", QStringLiteral("2"));
    EXPECT_FALSE(Shown("labelGifStale")) << "it does not count while repeating for ever";
    Press("checkRepeatForever");
    EXPECT_TRUE(Shown("labelGifStale"));
    ForgetChanges();
    window.OnFileNew();
    EXPECT_FALSE(Shown("labelGifStale"));
}

TEST_F(ShareStory, OneThatPlaysOnceCanPlayAgain) {
    AddFrames(3);
    Type("textFieldFrameDelay", QStringLiteral("0.03"));
    EXPECT_FALSE(Shown("buttonPlayAgain"));
    Generate();
    ASSERT_TRUE(QTest::qWaitFor([this] { return Shown("labelGifRepeats"); }));
    EXPECT_EQ(TextOf("labelGifRepeats"), QStringLiteral("Plays once"));
    EXPECT_TRUE(Shown("buttonPlayAgain"));
    Press("buttonPlayStopPreview");
    ASSERT_TRUE(QTest::qWaitFor([this] { return View().ShownPictures() == 3; }));
    const QImage last = View().Image();
    Press("buttonPlayAgain");
    EXPECT_EQ(ButtonText("buttonPlayStopPreview"), QStringLiteral("Stop"));
    EXPECT_EQ(View().ShownPictures(), 0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return View().ShownPictures() == 3; }));
    EXPECT_EQ(View().Image(), last);

    Type("textFieldLoopCount", QStringLiteral("2"));
    Generate();
    ASSERT_TRUE(QTest::qWaitFor([this] { return Shown("buttonPlayAgain"); }));
    EXPECT_EQ(TextOf("labelGifRepeats"), QStringLiteral("Plays 3 times"));
    Press("checkRepeatForever");
    Generate();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !TextOf("labelGifInfo").isEmpty(); }));
    EXPECT_FALSE(Shown("labelGifRepeats"));
    EXPECT_FALSE(Shown("buttonPlayAgain"));
}

}  // namespace
}  // namespace lumirra
