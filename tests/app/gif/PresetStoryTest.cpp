#include <QAction>
#include <QCheckBox>
#include <QDoubleSpinBox>

#include "GenerateFixture.h"
#include "settings/SettingsRecords.h"
#include "views/controls/PopUp.h"

namespace lumirra {
namespace {

class PresetStory : public GenerateStory {
  protected:
    static void Choose(QWidget& of, const QString& place) {
        auto* popUp = of.findChild<PopUp*>(QStringLiteral("popUpPreset"));
        const int item = popUp->findText(place, Qt::MatchStartsWith);
        ASSERT_GE(item, 0) << qPrintable(place);
        popUp->setCurrentIndex(item);
        Q_EMIT popUp->activated(item);
    }
    void Choose(const char* place) { Choose(window, QString::fromUtf8(place)); }
    QString Chosen() { return Find<PopUp>("popUpPreset").currentText(); }
    QString Advice() {
        QString text = TextOf("labelPresetAdvice");
        return Shown("labelPresetAdvice") ? text.replace(QChar(0xa0), QLatin1Char(' ')) : QString();
    }
    void Trigger(const char* action) {
        window.findChild<QAction*>(QString::fromLatin1(action))->trigger();
    }
    OutputSettings Output() { return OutputSettingsOf(window.Values()); }
};

TEST_F(PresetStory, SaysWhatWillNotFitAndMendsTheWidth) {
    EXPECT_EQ(Chosen(), QStringLiteral("None"));
    Choose("Slack, emoji");
    EXPECT_EQ(Output().maxBytes, 128'000);
    EXPECT_TRUE(Find<QCheckBox>("checkMaxWidth").isChecked());
    EXPECT_TRUE(Enabled("fieldMaxWidth"));
    EXPECT_EQ(Advice(), QString()) << "there are no frames yet";

    AddFrames(52, {80, 200});
    EXPECT_TRUE(Advice().contains(QStringLiteral("52"))) << qPrintable(Advice());
    EXPECT_TRUE(Advice().contains(QStringLiteral("80 × 200")));
    ASSERT_TRUE(Shown("buttonUseOfferedWidth"));
    Press("buttonUseOfferedWidth");
    EXPECT_EQ(Output().maxWidth, 51);
    EXPECT_FALSE(Advice().contains(QStringLiteral("80 × 200")));
    EXPECT_FALSE(Shown("buttonUseOfferedWidth"));
    window.UpdateSelectionScrollViewFrames(0);
    Press("buttonRemoveSelectedFrame");
    Press("buttonRemoveSelectedFrame");
    EXPECT_EQ(Advice(), QString());

    Generate();
    EXPECT_EQ(SizeOf(Gif()), QSize(51, 128));
    EXPECT_EQ(window.State().frames.At(0).size, QSize(80, 200)) << "the list is left alone";
    Find<QDoubleSpinBox>("fieldMaxSize").setValue(2);
    EXPECT_TRUE(Advice().contains(QStringLiteral("128 KB"))) << qPrintable(Advice());

    const QString profile = pictures.filePath(QStringLiteral("p.lmr"));
    dialogs.saves.push_back(profile);
    window.OnSaveProfile();
    Choose("None");
    ForgetChanges();
    dialogs.files.push_back(QStringList{profile});
    window.OnLoadProfile();
    EXPECT_TRUE(Chosen().startsWith(QStringLiteral("Slack, emoji"))) << "the profile keeps it";
    Choose("None");
    EXPECT_EQ(Advice(), QString());
    EXPECT_EQ(Output().maxBytes + Output().maxWidth, 0);
    Trigger("actionUndo");
    EXPECT_TRUE(Chosen().startsWith(QStringLiteral("Slack, emoji")));
    Press("buttonOutputReset");
    EXPECT_EQ(Chosen(), QStringLiteral("None"));
}

TEST_F(PresetStory, ALimitThatSpoilsTheQualityIsMetBySmallerFrames) {
    AddNoise(3, {200, 150});
    Press("checkMaxSize");
    Find<QDoubleSpinBox>("fieldMaxSize").setValue(0.02);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Shown("buttonUseOfferedWidth"); }, 60000));
    const QString advice = Advice();
    EXPECT_TRUE(advice.contains(QStringLiteral("200 × 150"))) << qPrintable(advice);
    Trigger("actionUseOfferedWidth");
    const int width = Output().maxWidth;
    EXPECT_GT(width, 0);
    EXPECT_TRUE(advice.contains(QStringLiteral("at %1 × ").arg(width))) << qPrintable(advice);
    EXPECT_FALSE(Shown("buttonUseOfferedWidth"));
    Generate();
    EXPECT_EQ(SizeOf(Gif()).width(), width);
    EXPECT_LE(QFile(Gif()).size(), 20'000);
    Trigger("actionUndo");
    EXPECT_EQ(Output().maxWidth, 0);
    EXPECT_TRUE(Shown("labelGifStale"));
}

TEST_F(PresetStory, ThePersonsOwnPresetsAreListedAndABrokenFileIsTold) {
    const QTemporaryDir config;
    ASSERT_TRUE(QDir(config.path()).mkpath(QStringLiteral("lumirra")));
    QFile file(config.filePath(QStringLiteral("lumirra/presets.json")));
    const auto write = [&](const QByteArray& text) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
    };
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));
    write(R"([{"name": "moon", "place": "The Moon", "maxSeconds": 1, "maxBytes": 5000}])");
    {
        ViewController other(theme, dialogs, folder.path());
        Choose(other, QStringLiteral("The Moon"));
        EXPECT_EQ(OutputSettingsOf(other.Values()).maxBytes, 5000);
    }
    write("[");
    ViewController other(theme, dialogs, folder.path());
    Choose(other, QStringLiteral("GitHub"));
    EXPECT_EQ(OutputSettingsOf(other.Values()).maxBytes, 10'000'000);
    const auto* advice = other.findChild<QLabel*>(QStringLiteral("labelPresetAdvice"));
    EXPECT_FALSE(advice->isHidden());
    EXPECT_TRUE(advice->text().contains(QStringLiteral("presets.json")))
        << qPrintable(advice->text());
    EXPECT_TRUE(dialogs.messages.isEmpty()) << "nobody is stopped by it";
    before.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", before);
}

}  // namespace
}  // namespace lumirra
