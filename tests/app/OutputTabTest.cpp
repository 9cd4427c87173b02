#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QSettings>
#include <QTest>
#include <cmath>
#include <random>

#include "WindowFixture.h"
#include "app/gif/OutputPreferences.h"
#include "app/gif/SizeEstimate.h"
#include "output/SizeText.h"

namespace lumirra {
namespace {

class OutputTab : public WindowTest {
  protected:
    void SetUp() override {
        // Of the tests before; the window of the fixture has read its own already.
        QSettings().clear();
    }
    void TearDown() override { QSettings().clear(); }
};

TEST_F(OutputTab, PreferencesOutliveTheWindowAndLeaveTheProjectAlone) {
    EXPECT_EQ(window.Preferences(), OutputPreferences());
    EXPECT_EQ(ValueOf("sliderQuality"), 90);
    EXPECT_FALSE(Enabled("fieldMaxSize"));
    EXPECT_TRUE(Enabled("textFieldLoopCount"));
    const ControlValues before = window.Values();

    Edit("sliderQuality", 55);
    Press("checkMaxSize");
    Find<QDoubleSpinBox>("fieldMaxSize").setValue(2.5);
    Press("checkRepeatForever");
    EXPECT_TRUE(Enabled("fieldMaxSize"));
    EXPECT_FALSE(Enabled("textFieldLoopCount")) << "it does not count now";
    EXPECT_EQ(window.Values(), before);
    EXPECT_FALSE(window.IsModified());
    Press("buttonOutputReset");
    window.OnFileNew();

    const OutputPreferences chosen{55, true, 2.5, true};
    EXPECT_EQ(window.Preferences(), chosen);
    const ViewController next(theme, dialogs, folder.path());
    EXPECT_EQ(next.Preferences(), chosen);

    const GifRequest request = WithPreferences({}, chosen);
    EXPECT_EQ(request.quality, 55);
    EXPECT_EQ(request.maxBytes, 2'500'000);
    EXPECT_TRUE(request.repeatForever);
    const GifRequest plain = WithPreferences({}, {});
    EXPECT_EQ(plain.quality, GifRequest().quality);
    EXPECT_EQ(plain.maxBytes, 0);
    EXPECT_FALSE(plain.repeatForever);
}

TEST_F(OutputTab, DamagedPreferencesAreBroughtIntoRange) {
    QSettings settings;
    settings.setValue(QStringLiteral("Output/Quality"), 1000);
    settings.setValue(QStringLiteral("Output/Megabytes"), QStringLiteral("nan"));
    settings.setValue(QStringLiteral("Output/LimitsSize"), QStringLiteral("perhaps"));
    const OutputPreferences kept = LoadOutputPreferences();
    EXPECT_EQ(kept.quality, 100);
    EXPECT_EQ(kept.megabytes, OutputPreferences().megabytes);
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
            request.framePaths << folder.filePath(QStringLiteral("%1.png").arg(i));
            EXPECT_TRUE(image.save(request.framePaths.back()));
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
    request.framePaths.removeLast();
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
