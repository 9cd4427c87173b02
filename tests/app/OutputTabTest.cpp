#include <QAccessible>
#include <QDoubleSpinBox>
#include <QTest>
#include <random>

#include "WindowFixture.h"
#include "app/gif/SizeEstimate.h"
#include "output/SizeText.h"
#include "settings/ProfileText.h"
#include "settings/SettingsRecords.h"

namespace lumirra {
namespace {

using OutputTab = WindowTest;

TEST_F(OutputTab, QualityLimitAndRepeatingBelongToTheProject) {
    EXPECT_FALSE(Enabled("fieldMaxSize"));
    EXPECT_TRUE(Enabled("textFieldLoopCount"));
    Press("checkMaxSize");
    EXPECT_TRUE(window.IsModified());
    window.setWindowTitle(QStringLiteral("Lumirra"));
    Find<QDoubleSpinBox>("fieldMaxSize").setValue(2.5);
    Edit("sliderQuality", 55);
    Press("checkRepeatForever");
    EXPECT_TRUE(window.IsModified());
    EXPECT_TRUE(Enabled("fieldMaxSize"));
    EXPECT_FALSE(Enabled("textFieldLoopCount")) << "it does not count now";
    const ControlValues chosen = window.Values();
    EXPECT_EQ(OutputSettingsOf(chosen).maxBytes, 2'500'000);

    const QString path = folder.filePath(QStringLiteral("p.lmr"));
    dialogs.saves.push_back(path);
    window.OnSaveProfile();
    Press("buttonOutputReset");
    EXPECT_EQ(window.Values(), InitialControlValues());
    EXPECT_TRUE(Enabled("textFieldLoopCount"));
    dialogs.files.push_back(QStringList{path});
    window.OnLoadProfile();
    EXPECT_EQ(window.Values(), chosen);
    EXPECT_FALSE(Enabled("textFieldLoopCount"));
    window.OnFileNew();
    EXPECT_EQ(window.Values(), InitialControlValues());
    EXPECT_FALSE(Enabled("fieldMaxSize"));
    const ViewController next(theme, dialogs, folder.path());
    EXPECT_EQ(next.Values(), InitialControlValues());
}

TEST_F(OutputTab, AssistiveTechnologyTurnsSettingsOnAndOff) {
    const auto toggle = [this](const char* outlet) {
        auto* button = QAccessible::queryAccessibleInterface(&Find<QWidget>(outlet));
        button->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    };
    toggle("checkMaxWidth");
    EXPECT_TRUE(window.Values().IsOn(Control::CheckMaxWidth));
    EXPECT_TRUE(Enabled("fieldMaxWidth"));
    toggle("checkMaxWidth");
    EXPECT_FALSE(window.Values().IsOn(Control::CheckMaxWidth));
    OpenVideo(Media("monster.mp4"));
    for (const char* outlet : {"radioFixedNumberOfFrames", "radioFixedIntervalBetweenFrames"}) {
        toggle(outlet);
        EXPECT_TRUE(window.Values().IsOn(*ControlByName(QString::fromLatin1(outlet)))) << outlet;
        Press(outlet);
        EXPECT_TRUE(Find<QAbstractButton>(outlet).isChecked()) << "it stays on";
    }
    EXPECT_FALSE(window.Values().IsOn(Control::RadioFixedNumberOfFrames));
}

TEST_F(OutputTab, WhatALaterVersionKeptInTheProfileStays) {
    const QString path = folder.filePath(QStringLiteral("later.lmr"));
    const Profile later{{}, {{QStringLiteral("speed"), 2}}};
    ASSERT_TRUE(SaveProfile(later, path));
    dialogs.files.push_back(QStringList{path});
    window.OnLoadProfile();
    Edit("sliderQuality", 55);
    window.OnSaveProfile();
    EXPECT_EQ(LoadProfile(path)->unknown, later.unknown);
    window.OnFileNew();
    Edit("sliderQuality", 55);
    dialogs.saves.push_back(path);
    window.OnSaveProfile();
    EXPECT_TRUE(LoadProfile(path)->unknown.isEmpty());
}

class SizeLine : public testing::Test {
  protected:
    /// Grain, so that the bytes depend on the quality.
    GifRequest Request(int frames) {
        std::mt19937 random(5);
        GifRequest request;
        for (int i = 0; i < frames; ++i) {
            QImage image(60, 40, QImage::Format_RGBA8888);
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    image.setPixelColor(x, y, QColor::fromRgb(static_cast<QRgb>(random())));
                }
            }
            request.frames.push_back({folder.filePath(QStringLiteral("%1.png").arg(i)), {}, {}});
            EXPECT_TRUE(image.save(request.frames.back().path));
        }
        request.destination = folder.filePath(QStringLiteral("out.gif"));
        return request;
    }
    static QString Written(const GifRequest& request) {
        return SizeText(WriteGif(request, {}, {})->bytes);
    }

    QTemporaryDir folder;
    QLabel line;
    SizeEstimate estimate{line};
};

TEST_F(SizeLine, FollowsFramesAndQuality) {
    GifRequest request = Request(4);
    estimate.Follow(request);
    request.quality = 100;
    estimate.Follow(request);  // before the first was looked at
    ASSERT_TRUE(QTest::qWaitFor([&] { return !estimate.IsBusy(); }));
    EXPECT_EQ(line.text(), QStringLiteral("About ") + Written(request));

    request.quality = 20;
    request.frames.pop_back();
    estimate.Follow(request);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !estimate.IsBusy(); }));
    EXPECT_EQ(line.text(), QStringLiteral("About ") + Written(request));

    request.maxBytes = 1000;
    estimate.Follow(request);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !estimate.IsBusy(); }));
    EXPECT_TRUE(line.text().contains(QStringLiteral("1.00 KB"))) << qPrintable(line.text());

    estimate.Follow({});
    EXPECT_EQ(line.text(), QString());
    EXPECT_FALSE(estimate.IsBusy());
}

TEST_F(SizeLine, ChangesWhileItWorks) {
    GifRequest request = Request(60);
    for (int quality = 30; quality <= 34; ++quality) {
        request.quality = quality;
        estimate.Follow(request);
        QTest::qWait(450);  // it has begun, and may have ended
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return !estimate.IsBusy(); }, 20000));
    EXPECT_EQ(line.text(), QStringLiteral("About ") + Written(request));
    request.quality = 80;
    estimate.Follow(request);
    QTest::qWait(420);
    // Goes away in the middle of its work.
}

}  // namespace
}  // namespace lumirra
