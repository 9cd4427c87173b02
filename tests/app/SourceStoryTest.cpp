#include <unistd.h>

#include <QCheckBox>
#include <QFile>
#include <QMimeData>
#include <QTabWidget>
#include <QTest>

#include "WindowFixture.h"
#include "imaging/Effects.h"
#include "imaging/files/FileName.h"
#include "imaging/files/FileReplacement.h"
#include "sources/SourceKinds.h"
#include "sources/StillReader.h"
#include "views/controls/SliderCellVideo.h"

namespace lumirra {
namespace {

using SourceStory = WindowTest;

QString ReadMe() {
    return QStringLiteral(LUMIRRA_SOURCE_DIR "/README.md");
}

TEST_F(SourceStory, AVideoIsOpenedSoughtMarkedAndClosed) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));  // 90 frames, 3 s
    EXPECT_EQ(dialogs.opened.last().nameFilters, NameFilters(SourceKind::Video));
    EXPECT_EQ(TextOf("labelStartTime"), QStringLiteral("00:00:00.0"));
    EXPECT_EQ(TextOf("labelEndTime"), QStringLiteral("00:00:03.0"));
    EXPECT_EQ(CounterIn(Picture()), 0);
    EXPECT_TRUE(Enabled("sliderVideoPosition"));
    EXPECT_TRUE(Shown("buttonPlayVideo"));
    EXPECT_TRUE(Enabled("buttonAddFramesAutomatically"));
    EXPECT_EQ(FieldText("textFieldDimensionsWidth"), QStringLiteral("320"));

    Edit("sliderVideoPosition", 0.5);
    Settle();
    EXPECT_EQ(CounterIn(Picture()), 45);
    EXPECT_EQ(TextOf("labelVideoPositionTime"), QStringLiteral("00:00:01.5"));
    Press("buttonMarkAsEndTime");
    EXPECT_EQ(window.State().endPosition, 0.5F);
    EXPECT_EQ(TextOf("labelEndTime"), QStringLiteral("00:00:01.5"));
    Press("buttonMarkAsStartTime");
    EXPECT_EQ(dialogs.OnlyMessage(),
              QStringLiteral("The Start Time marker cannot be placed after the End Time marker."));
    EXPECT_EQ(window.State().startPosition, 0.0F);
    Edit("sliderVideoPosition", 0.25);
    Settle();
    Press("buttonMarkAsStartTime");
    EXPECT_EQ(window.State().startPosition, 0.25F);
    Press("buttonMarkAsEndTime");
    EXPECT_EQ(dialogs.messages.size(), 1);
    EXPECT_EQ(window.State().endPosition, 0.5F);

    QTest::keyClick(&window, Qt::Key_Period);
    Settle();
    EXPECT_EQ(CounterIn(Picture()), 23);
    QTest::keyClick(&window, Qt::Key_Comma);
    QTest::keyClick(&window, Qt::Key_Comma);
    Settle();
    EXPECT_EQ(CounterIn(Picture()), 21);
    Edit("sliderVideoPosition", 1.0);
    Settle();
    EXPECT_EQ(CounterIn(Picture()), 89) << "the end shows the last frame";

    Press("buttonCloseVideo");
    EXPECT_TRUE(window.State().videoPath.isEmpty());
    EXPECT_TRUE(Picture().isNull());
    EXPECT_FALSE(Enabled("sliderVideoPosition"));
    EXPECT_EQ(window.State().endPosition, 1.0F);
    EXPECT_FALSE(window.IsModified()) << "the source is no part of a project";
}

TEST_F(SourceStory, PicturesFormAListWithoutDuplicates) {
    const QString a = Media("photo.jpg");
    const QString b = Media("photo.bmp");
    const QString c = Media("photo-grey.png");
    OpenImages({a, b});
    EXPECT_EQ(TextOf("labelImageNumber"), QStringLiteral("1/2"));
    EXPECT_TRUE(Enabled("buttonAddFramesAutomatically"));
    EXPECT_FALSE(Enabled("sliderVideoPosition"));
    EXPECT_EQ(Picture(), ReadStill(a).image);
    Press("buttonPreviousImage");
    EXPECT_EQ(window.State().currentImageNumber, 0);

    OpenImages({a, c});
    EXPECT_EQ(window.State().listImagePaths, (QStringList{a, b, c}));
    EXPECT_EQ(TextOf("labelImageNumber"), QStringLiteral("2/3"));
    EXPECT_EQ(window.State().currentImagePath, b);
    Press("buttonNextImage");
    Press("buttonNextImage");
    Settle();
    EXPECT_EQ(TextOf("labelImageNumber"), QStringLiteral("3/3"));
    EXPECT_EQ(Picture(), ReadStill(c).image);

    Press("buttonCloseVideo");
    EXPECT_TRUE(window.State().listImagePaths.isEmpty());
    EXPECT_FALSE(Shown("labelImageNumber"));
    OpenImages({a});
    EXPECT_EQ(TextOf("labelImageNumber"), QStringLiteral("1/1"));
    EXPECT_FALSE(Enabled("buttonAddFramesAutomatically"));
    OpenVideo(Media("counter-2997.mov"));
    EXPECT_TRUE(window.State().listImagePaths.isEmpty());
    EXPECT_FALSE(Shown("labelImageNumber"));
}

TEST_F(SourceStory, CommandsWithoutASourceSaySo) {
    window.OnMarkAsStartTime();
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Please select a video first."));
    window.OnMarkAsEndTime();
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("Please select a video first."));
    window.OnPlayVideo();
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("The video could not be loaded."));
    window.VideoDragPerformed(QString());
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("The video could not be loaded."));
    window.ImageDragPerformed({});
    EXPECT_EQ(dialogs.OnlyMessage(), QStringLiteral("The image could not be loaded."));
    dialogs.files.push_back(std::nullopt);
    window.OnSelectVideo();
    EXPECT_TRUE(dialogs.messages.isEmpty()) << "cancelling is silent";
}

TEST_F(SourceStory, WhatCannotBeReadIsNamedAndTheWindowGoesOn) {
    auto& view = Find<VideoImageView>("imageViewVideo");
    const QString text = folder.filePath(QStringLiteral("bad-text.mp4"));
    ASSERT_TRUE(QFile::copy(ReadMe(), text));
    OpenVideo(text);
    EXPECT_TRUE(view.Problem().contains(QStringLiteral("bad-text.mp4")))
        << qPrintable(view.Problem());
    EXPECT_TRUE(view.Image().isNull());
    const QString copy = folder.filePath(QStringLiteral("ü – 画像 📷.mov"));
    ASSERT_TRUE(QFile::copy(Media("counter-2997.mov"), copy));
    OpenVideo(copy);
    EXPECT_TRUE(view.Problem().isEmpty());
    EXPECT_EQ(CounterIn(Picture()), 0);
    ASSERT_TRUE(QFile::remove(copy));
    Edit("sliderVideoPosition", 0.5);
    Settle();
    EXPECT_FALSE(view.Problem().isEmpty()) << "a source that vanished is noticed";
    OpenVideo(Media("counter-2997.mov"));
    EXPECT_TRUE(view.Problem().isEmpty());
}

TEST_F(SourceStory, RequestsDuringARenderLeadToExactlyOneMore) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));
    QList<int> shown;
    auto& label = Find<QLabel>("labelVideoPositionTime");
    Edit("sliderVideoPosition", 0.1);
    ASSERT_TRUE(window.State().updating);
    for (const double position : {0.2, 0.3, 0.4}) {
        Edit("sliderVideoPosition", position);
    }
    EXPECT_TRUE(window.State().selectionChanged);
    QElapsedTimer clock;
    clock.start();
    while (window.State().updating && clock.elapsed() < 30000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        const int number = CounterIn(Picture());
        if (shown.isEmpty() || shown.last() != number) {
            shown.append(number);
        }
    }
    EXPECT_EQ(shown, (QList<int>{0, 36})) << "the interrupted picture is never shown";
    EXPECT_EQ(label.text(), QStringLiteral("00:00:01.2"));
}

TEST_F(SourceStory, AnEffectShowsAndTheVeilLeavesTheCropAlone) {
    OpenImages({Media("photo.jpg")});
    const QImage source = Picture();
    Press("checkSketch");
    Settle();
    EXPECT_EQ(Picture(), ImageTools::ApplySketch(source, 0.8F, 1));
    Press("checkSketch");
    Type("textFieldCustomCropWidth", QStringLiteral("50"));
    Settle();
    const int right = source.width() - 2;
    EXPECT_EQ(Picture().pixel(2, 2), source.pixel(2, 2));
    const QColor under = source.pixelColor(right, 2);
    EXPECT_NEAR(Picture().pixelColor(right, 2).red(), 0.4 * under.red() + 0.6 * 255, 1.0);
}

TEST_F(SourceStory, DropsAreTakenAsTheOpenCommandsDo) {
    auto& view = Find<VideoImageView>("imageViewVideo");
    const auto drop = [&](const QList<QString>& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        data.setUrls(urls);
        const bool taken = view.PerformDragOperation(data);
        Settle();
        return taken;
    };
    EXPECT_FALSE(drop({folder.path()})) << "a folder";
    EXPECT_FALSE(drop({ReadMe()}));
    EXPECT_TRUE(drop({Media("photo.JPE"), ReadMe(), Media("ü – 画像 📷.png")}));
    EXPECT_EQ(window.State().listImagePaths.size(), 2);
    dialogs.answers.push_back(Dialogs::SecondButton);
    EXPECT_FALSE(drop({Media("counter-2997.mov")})) << "refused by the answer";
    EXPECT_EQ(dialogs.OnlyMessage(),
              QStringLiteral(
                  "All unsaved changes will be lost. Are you sure you want to add a new video?"));
    EXPECT_TRUE(window.State().videoPath.isEmpty());
    dialogs.answers.push_back(Dialogs::FirstButton);
    EXPECT_TRUE(drop({Media("counter-2997.mov")}));
    EXPECT_EQ(window.State().videoPath, Media("counter-2997.mov"));
}

TEST_F(SourceStory, FilesNamedAtTheStartAreOpenedOrRefusedInWords) {
    window.OpenFiles({});
    window.OpenFiles({ReadMe()});
    EXPECT_TRUE(dialogs.OnlyMessage().contains(QStringLiteral("README.md")));
    window.OpenFiles({Media("photo-16bit.png"), Media("photo-grey.png"), Media("photo-alpha.png")});
    Settle();
    EXPECT_EQ(window.State().listImagePaths.size(), 3);
    EXPECT_EQ(TextOf("labelImageNumber"), QStringLiteral("1/3"));
}

TEST_F(SourceStory, NamesThatAreNoTextOpenAndPlay) {
    const QString clip = folder.path() + QLatin1Char('/') + FileText("m\xFCller \xFF 100%41.mp4");
    ASSERT_TRUE(ReplaceByCopy(clip, Media("counter-30fps-bframes.mp4"), FileKind::Working));
    window.OpenFiles({clip});
    Settle();
    EXPECT_EQ(window.State().videoPath, clip);
    EXPECT_EQ(CounterIn(Picture()), 0);
    Edit("sliderVideoPosition", 0.5);
    Settle();
    EXPECT_EQ(CounterIn(Picture()), 45);
    Press("buttonPlayVideo");
    QTest::qWait(1500);
    EXPECT_TRUE(dialogs.messages.isEmpty()) << qPrintable(dialogs.messages.join(QLatin1Char(' ')));
    Press("buttonCloseVideo");
    EXPECT_EQ(::unlink(FileBytes(clip).constData()), 0);
}

TEST_F(SourceStory, PlayingStopsAndABrokenFilmIsReported) {
    window.show();
    QCoreApplication::processEvents();
    const int sliderWithoutVideo = Outlet(QStringLiteral("sliderVideoPosition")).x();
    OpenVideo(Media("counter-with-sound.m4v"));
    const int sliderWithVideo = Outlet(QStringLiteral("sliderVideoPosition")).x();
    EXPECT_GT(sliderWithVideo, sliderWithoutVideo) << "beside the button to play";
    Edit("sliderVideoPosition", 0.5);
    Settle();
    Press("buttonPlayVideo");
    EXPECT_TRUE(window.IsPlaying());
    EXPECT_TRUE(Shown("playerViewVideo"));
    EXPECT_FALSE(Shown("imageViewVideo"));
    EXPECT_FALSE(Shown("buttonZoomIn"));
    QTest::qWait(300);
    EXPECT_EQ(Outlet(QStringLiteral("sliderVideoPosition")).x(), sliderWithVideo);
    Press("buttonCloseVideo");
    EXPECT_FALSE(window.IsPlaying());
    EXPECT_FALSE(window.State().videoPath.isEmpty()) << "the first press only stops playing";
    EXPECT_TRUE(Shown("imageViewVideo"));
    EXPECT_EQ(CounterIn(Picture()), 45) << "the picture at the slider";
    QTest::keyClick(&window, Qt::Key_Space);
    EXPECT_TRUE(window.IsPlaying());
    Edit("sliderVideoPosition", 0);
    EXPECT_FALSE(window.IsPlaying()) << "a new preview ends playing";
    Settle();
}

TEST_F(SourceStory, PicturesReplaceAVideoAlsoWhenPicturesCameBefore) {
    OpenImages({Media("photo.jpg"), Media("photo.bmp")});
    OpenVideo(Media("counter-2997.mov"));
    EXPECT_FALSE(Enabled("buttonPreviousImage")) << "hidden, so nothing can press it";
    EXPECT_FALSE(Enabled("buttonNextImage"));
    OpenImages({Media("photo-grey.png")});
    EXPECT_TRUE(window.State().videoPath.isEmpty());
    EXPECT_EQ(TextOf("labelImageNumber"), QStringLiteral("1/1"));
    EXPECT_EQ(Picture(), ReadStill(Media("photo-grey.png")).image);
    window.OnPreviousImage();
    window.OnNextImage();
    EXPECT_EQ(window.State().currentImageNumber, 0);
}

TEST_F(SourceStory, AMarkerTellsTheTimeItWasSetAtWhileThePictureIsLate) {
    OpenVideo(Media("counter-30fps-bframes.mp4"));  // 3 s
    Edit("sliderVideoPosition", 0.5);
    ASSERT_TRUE(window.State().updating);
    Press("buttonMarkAsEndTime");
    EXPECT_EQ(TextOf("labelEndTime"), QStringLiteral("00:00:01.5"));
    window.CurrentProject().Undo();
    EXPECT_EQ(TextOf("labelEndTime"), QStringLiteral("00:00:03.0"));
    EXPECT_EQ(window.State().endPosition, 1.0F);
    Settle();
}

TEST_F(SourceStory, KeysDoWhatTheShortcutsPageSays) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    OpenImages({Media("photo.jpg"), Media("photo.bmp"), Media("photo-grey.png")});
    QTest::keyClick(&window, Qt::Key_Period);
    QTest::keyClick(&window, Qt::Key_Period);
    QTest::keyClick(&window, Qt::Key_Comma);
    EXPECT_EQ(window.State().currentImageNumber, 1);
    Settle();

    OpenVideo(Media("counter-with-sound.m4v"));
    auto& button = Find<QPushButton>("buttonMarkAsStartTime");
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_FALSE(button.hasFocus()) << "a click leaves the keyboard where it is";
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(window.IsPlaying());
    QTest::keyClick(&window, Qt::Key_Space);
    EXPECT_FALSE(window.IsPlaying());
    Edit("sliderVideoPosition", 0.5);
    QTest::keyClick(&window, Qt::Key_O);
    EXPECT_EQ(window.State().endPosition, 0.5F);
    Edit("sliderVideoPosition", 0.25);
    QTest::keyClick(&window, Qt::Key_I);
    EXPECT_EQ(window.State().startPosition, 0.25F);
    auto& check = Find<QCheckBox>("checkCartoon");
    Find<QTabWidget>("tabViewSettings").setCurrentIndex(2);
    check.setFocus();
    QTest::keyClick(&check, Qt::Key_Space);
    EXPECT_TRUE(check.isChecked()) << "the control itself uses Space";
    EXPECT_FALSE(window.IsPlaying());
    Settle();
}

}  // namespace
}  // namespace lumirra
