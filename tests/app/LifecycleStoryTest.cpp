#include <QComboBox>
#include <QFile>
#include <QTabWidget>
#include <QTest>
#include <cmath>

#include "WindowFixture.h"
#include "settings/ProfileText.h"

namespace lumirra {
namespace {

using LifecycleStory = WindowTest;

const char* const kExitQuestion =
    "You have unsaved changes that will be lost. Are you sure you want to exit the application?";

TEST_F(LifecycleStory, NewAsksOnlyWhenSomethingWouldBeLost) {
    window.OnFileNew();
    EXPECT_TRUE(dialogs.messages.isEmpty());
    OpenVideo(Media("counter-2997.mov"));
    Edit("sliderBrightness", 0.5);
    Settle();
    dialogs.answers = {Dialogs::SecondButton, Dialogs::FirstButton};
    window.OnFileNew();
    EXPECT_EQ(dialogs.OnlyMessage(),
              QStringLiteral("You have unsaved changes that will be lost. Continue?"));
    EXPECT_EQ(ValueOf("sliderBrightness"), 0.5F);
    EXPECT_FALSE(Picture().isNull());
    window.OnFileNew();
    EXPECT_EQ(window.Values(), InitialControlValues());
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Lumirra"));
    EXPECT_TRUE(Picture().isNull());
    EXPECT_FALSE(Enabled("sliderVideoPosition"));
}

TEST_F(LifecycleStory, APictureStillOnItsWayIsNotShownAfterNew) {
    dialogs.files.push_back(QStringList{Media("counter-2997.mov")});
    Press("buttonSelectVideo");
    ASSERT_TRUE(window.State().updating);
    window.OnFileNew();
    Settle();
    EXPECT_TRUE(Picture().isNull());
}

TEST_F(LifecycleStory, ClosingAsksAndRemovesTheTemporaryFiles) {
    const QString gif = folder.filePath(QStringLiteral("tempGif.gif"));
    QFile file(gif);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    window.show();
    window.MarkModified();
    dialogs.answers = {Dialogs::SecondButton, Dialogs::FirstButton};
    EXPECT_FALSE(window.close());
    EXPECT_EQ(dialogs.OnlyMessage(), QString::fromLatin1(kExitQuestion));
    EXPECT_TRUE(QFile::exists(gif));
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(QFile::exists(gif));
}

TEST_F(LifecycleStory, ProfilesAreSavedAndLoaded) {
    window.OnSaveProfile();
    EXPECT_TRUE(dialogs.saved.isEmpty()) << "nothing to save";
    Edit("sliderContrast", 1.5);
    const QString path = folder.filePath(QStringLiteral("holiday.lmr"));
    dialogs.saves.push_back(path);
    window.OnSaveProfile();
    EXPECT_EQ(dialogs.saved.last().suggestedName, QStringLiteral("profile.lmr"));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Lumirra - holiday"));
    Edit("sliderContrast", 2);
    window.OnSaveProfile();
    EXPECT_EQ(dialogs.saved.size(), 1) << "the path is known now";
    const ControlValues saved = window.Values();

    window.OnFileNew();
    dialogs.files.push_back(QStringList{path});
    window.OnLoadProfile();
    EXPECT_EQ(window.Values(), saved);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Lumirra - holiday"));

    QFile bad(folder.filePath(QStringLiteral("bad.lmr")));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("1\n2\n");
    bad.close();
    dialogs.files.push_back(QStringList{bad.fileName()});
    window.OnLoadProfile();
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Could not load profile."));
    EXPECT_EQ(window.Values(), saved);

    window.MarkModified();
    dialogs.saves.push_back(folder.filePath(QStringLiteral("missing/x.lmr")));
    window.OnSaveProfileAs();
    EXPECT_TRUE(dialogs.OnlyMessage().startsWith(QLatin1String("Could not save profile. ")));
    EXPECT_TRUE(window.IsModified());
}

TEST_F(LifecycleStory, ALoadBringsEverythingInLine) {
    OpenImages({Media("photo-alpha.png")});
    QStringList lines = ProfileText({window.Values()}).split(QLatin1Char('\n'));
    const QImage before = Picture();
    lines[7] = QStringLiteral("99");    // brightness: far beyond its end
    lines[43] = QStringLiteral("1");    // the crop in pixels
    lines[48] = QStringLiteral("200");  // its width, and the stepper's
    lines[49] = QStringLiteral("200.0");
    lines[52] = QStringLiteral("50");  // resized to
    lines[53] = QStringLiteral("50.0");
    QFile file(folder.filePath(QStringLiteral("edited.lmr")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(lines.join(QLatin1Char('\n')).toUtf8());
    file.close();
    dialogs.files.push_back(QStringList{file.fileName()});
    window.OnLoadProfile();
    Settle();
    auto& brightness = Find<RangeControl>("sliderBrightness");
    EXPECT_EQ(brightness.value(), static_cast<float>(brightness.maximum()));
    EXPECT_EQ(Find<RangeControl>("stepperCustomCropWidth").maximum(), 10000);
    EXPECT_EQ(Find<RangeControl>("stepperCustomCropOriginX").minimum(), -10000);
    EXPECT_EQ(ValueOf("stepperCustomCropWidth"), 200.0F);
    EXPECT_EQ(FieldText("textFieldDimensionsWidth"), QStringLiteral("100"));
    EXPECT_NE(Picture(), before);
    // The next change of the unit starts from the loaded one.
    auto& unit = Find<QComboBox>("comboCustomCrop");
    unit.setCurrentIndex(0);
    Q_EMIT unit.activated(0);
    EXPECT_EQ(ValueOf("stepperCustomCropWidth"),
              std::round(200.0F * 100 / static_cast<float>(before.width())));
    EXPECT_TRUE(dialogs.messages.isEmpty());
}

TEST_F(LifecycleStory, AProfileHoldsWhatIsBeingTypedAsIfTheFieldHadBeenLeft) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    auto& tabs = Find<QTabWidget>("tabViewSettings");
    tabs.setCurrentIndex(tabs.count() - 1);
    auto& delay = Find<QLineEdit>("textFieldFrameDelay");
    const QString path = folder.filePath(QStringLiteral("typed.lmr"));
    for (const auto& [typed, kept] : {std::pair("0.3", "0.3"), std::pair("soon", "0.1")}) {
        delay.setFocus();
        delay.selectAll();
        QTest::keyClicks(&delay, QString::fromLatin1(typed));
        dialogs.saves.push_back(path);
        window.OnSaveProfileAs();
        EXPECT_EQ(FieldText("textFieldFrameDelay"), QString::fromLatin1(kept));
        EXPECT_EQ(LoadProfile(path)->values.Text(Control::TextFieldFrameDelay),
                  QString::fromLatin1(kept));
        EXPECT_TRUE(delay.hasFocus());
    }
}

TEST_F(LifecycleStory, HelpCommandsOpenPagesThatExist) {
    window.OnHowToMakeAGifFromAVideo();
    window.OnHowTocreateAGifFromImages();
    ASSERT_EQ(dialogs.addresses.size(), 2);
    for (const QUrl& address : dialogs.addresses) {
        EXPECT_TRUE(QFile::exists(address.toLocalFile())) << qPrintable(address.toString());
    }
    EXPECT_NE(dialogs.addresses[0], dialogs.addresses[1]);
}

}  // namespace
}  // namespace lumirra
