#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <random>

#include "GifBytes.h"
#include "views/gif/GifBlocks.h"
#include "views/gif/GifClock.h"
#include "views/gif/GifView.h"
#include "views/style/Colors.h"

namespace lumirra {
namespace {

using test::GifBytes;
using test::GifPart;

/// A picture that fills the canvas for each delay, in colours 1, 2, ..., 7, 1, ...
QList<GifPart> WholePictures(int width, int height, const QList<int>& delays) {
    QList<GifPart> parts;
    for (const int delay : delays) {
        const int color = static_cast<int>(parts.size()) % 7 + 1;
        parts.append({0, 0, width, height, color, delay});
    }
    return parts;
}

QList<int> DelaysOf(QByteArray bytes, std::optional<int>* repeats = nullptr) {
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    GifBlocks blocks(file);
    QList<int> delays;
    for (auto delay = blocks.NextDelay(); delay; delay = blocks.NextDelay()) {
        delays.append(*delay);
    }
    if (repeats != nullptr) {
        *repeats = blocks.Repeats();
    }
    return delays;
}

TEST(GifBlocks, DelaysAndRepeatsAsWritten) {
    const QList<int> delays{0, 1, 2, 10, 65535};
    const QList<GifPart> parts = WholePictures(90, 40, delays);
    for (const std::optional<int> repeats :
         {std::optional<int>(), std::optional(0), std::optional(3), std::optional(65535)}) {
        std::optional<int> read = 77;
        EXPECT_EQ(DelaysOf(GifBytes(90, 40, repeats, parts), &read), delays);
        EXPECT_EQ(read, repeats);
    }
    EXPECT_EQ(PlayedMilliseconds(0), 100);
    EXPECT_EQ(PlayedMilliseconds(1), 100);
    EXPECT_EQ(PlayedMilliseconds(2), 20);
    EXPECT_EQ(PlayedMilliseconds(65535), 655350);
}

TEST(GifBlocks, ADamagedFileEndsEarlyWhereverItIsCut) {
    const QByteArray whole = GifBytes(20, 10, 2, WholePictures(20, 10, {5, 6, 7}));
    const QList<int> all = DelaysOf(whole);
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const QList<int> read = DelaysOf(whole.left(length));
        EXPECT_EQ(read, all.first(read.size())) << length;
    }
    std::mt19937 random(3);
    for (int i = 0; i < 2000; ++i) {
        QByteArray bytes = whole;
        for (int change = 0; change < 3; ++change) {
            bytes[static_cast<qsizetype>(random() % static_cast<unsigned>(bytes.size()))] =
                static_cast<char>(random());
        }
        EXPECT_LT(DelaysOf(bytes).size(), bytes.size());  // it comes to an end
    }
}

TEST(GifClock, LateTimersDoNotAddUp) {
    std::mt19937 random(7);
    GifClock clock;
    qint64 now = 5'000;
    const qint64 begin = now;
    clock.Start(now, 30);
    for (int picture = 1; picture <= 2000; ++picture) {
        now += clock.Wait(now) * GifClock::kNanosecondsPerMillisecond +
               static_cast<qint64>(random() % 20'000'000);
        ASSERT_TRUE(clock.IsDue(now));
        const qint64 ideal = begin + picture * 30 * GifClock::kNanosecondsPerMillisecond;
        EXPECT_LT(std::abs(now - ideal), 22'000'000) << picture;
        clock.Advance(now, 30);
    }
}

TEST(GifClock, AfterALongPauseItGoesOnFromThere) {
    GifClock clock;
    clock.Start(0, 40);
    const qint64 late = 10'000 * GifClock::kNanosecondsPerMillisecond;
    clock.Advance(late, 40);
    EXPECT_FALSE(clock.IsDue(late));
    EXPECT_EQ(clock.Wait(late), 40);
}

class GifViewTest : public testing::Test {
  protected:
    QString Write(const char* name, const QByteArray& bytes) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return file.fileName();
    }
    void Show(const QString& path) {
        view.SetFile(path);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !view.IsLoading(); }, 20000));
    }
    /// The number of `WholePictures` that is shown, 1..7; 0 for none.
    int ColorShown() const {
        if (view.Image().isNull()) {
            return 0;
        }
        const QColor color = view.Image().pixelColor(0, 0);
        return (color.red() > 128 ? 1 : 0) + (color.green() > 128 ? 2 : 0) +
               (color.blue() > 128 ? 4 : 0);
    }

    QTemporaryDir folder;
    GifView view;
};

TEST_F(GifViewTest, StillShowsTheFirstPictureAndWhatThereIsToSay) {
    QSignalSpy info(&view, &GifView::InfoKnown);
    const QByteArray bytes = GifBytes(64, 48, {}, WholePictures(64, 48, {1, 0, 25}));
    EXPECT_FALSE(view.HasPictureObject());
    Show(Write("a.gif", bytes));
    EXPECT_TRUE(view.HasPictureObject());
    EXPECT_FALSE(view.IsAnimating());
    EXPECT_EQ(ColorShown(), 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return info.count() == 1; }));
    GifInfo expected{3, {64, 48}, 100 + 100 + 250, bytes.size(), true};
    EXPECT_EQ(info.at(0).at(0).value<GifInfo>(), expected);
    Show(Write("b.gif", GifBytes(64, 48, 7, WholePictures(64, 48, {1, 0, 25}))));
    ASSERT_TRUE(QTest::qWaitFor([&] { return info.count() == 2; }));
    expected.bytes = QFile(folder.filePath(QStringLiteral("b.gif"))).size();
    expected.repeats = 7;
    EXPECT_EQ(info.at(1).at(0).value<GifInfo>(), expected);

    view.SetFile(QString());
    EXPECT_EQ(ColorShown(), 0);
    EXPECT_TRUE(view.HasPictureObject()) << "an empty one";
    view.Clear();
    EXPECT_FALSE(view.HasPictureObject());
}

TEST_F(GifViewTest, PlaysAsOftenAsTheFileWants) {
    const struct {
        std::optional<int> repeats;
        int shown;
    } cases[] = {{std::nullopt, 3}, {1, 6}, {2, 9}};
    for (const auto& one : cases) {
        Show(Write("loops.gif", GifBytes(8, 8, one.repeats, WholePictures(8, 8, {3, 3, 3}))));
        view.Play();
        ASSERT_TRUE(QTest::qWaitFor([&] { return view.ShownPictures() == one.shown; }, 20000));
        QTest::qWait(120);
        EXPECT_EQ(view.ShownPictures(), one.shown);
        EXPECT_EQ(ColorShown(), 3) << "it stays on its last picture";
        EXPECT_TRUE(view.IsAnimating());
        view.Stop();
        EXPECT_FALSE(view.IsAnimating());
        EXPECT_EQ(ColorShown(), 3) << "until the first one is read again";
        ASSERT_TRUE(QTest::qWaitFor([&] { return ColorShown() == 1; }, 20000));
    }
}

TEST_F(GifViewTest, EachPictureStaysForItsDelay) {
    // A quarter of a second, a delay that browsers do not believe, and a fifth.
    Show(Write("delays.gif", GifBytes(8, 8, 0, WholePictures(8, 8, {25, 1, 20}))));
    QElapsedTimer clock;
    QList<qint64> changes;
    clock.start();
    view.Play();
    for (int shown = 1; changes.size() < 9 && clock.elapsed() < 20000;) {
        QTest::qWait(1);
        for (; shown < view.ShownPictures(); ++shown) {
            changes.append(clock.elapsed());
        }
    }
    ASSERT_GE(changes.size(), 9);
    const int ends[] = {250, 350, 550, 800, 900, 1100, 1350, 1450, 1650};
    for (int i = 0; i < 9; ++i) {
        EXPECT_GE(changes[i], ends[i] - 2) << i;
        EXPECT_LE(changes[i], ends[i] + 250) << i << ": late even for a busy machine";
    }
}

TEST_F(GifViewTest, MissingAndDamagedFilesShowWhatThereIs) {
    Show(folder.filePath(QStringLiteral("none.gif")));
    EXPECT_EQ(ColorShown(), 0);
    Show(Write("text.gif", "not a GIF at all"));
    EXPECT_EQ(ColorShown(), 0);
    view.Play();
    view.grab();
    view.Stop();
    const QByteArray whole = GifBytes(30, 20, 0, WholePictures(30, 20, {2, 2, 2}));
    for (qsizetype length = 0; length < whole.size(); length += 37) {
        Show(Write("cut.gif", whole.left(length)));
        view.Play();
        QTest::qWait(5);
        view.grab();
    }
    const QString path = Write("goes.gif", whole);
    Show(path);
    view.Play();
    QTest::qWait(50);
    ASSERT_TRUE(QFile::remove(path));
    QTest::qWait(50);
    EXPECT_NE(ColorShown(), 0) << "it was opened";
    view.Stop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return ColorShown() == 0; }));
    EXPECT_TRUE(view.HasPictureObject());
}

TEST_F(GifViewTest, FitsThePanelSharplyOnAChequerWhereItIsTransparent) {
    view.resize(122, 82);
    view.show();
    Show(Write("half.gif",
               GifBytes(40, 10, {}, {{0, 0, 40, 10, 0, 2, 1, true}, {0, 0, 20, 10, 1, 2}})));
    view.Play();
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.ShownPictures() == 2; }));
    const QImage shown = view.grab().toImage();
    const double ratio = shown.devicePixelRatio();
    const auto at = [&](int x, int y) {
        return shown.pixelColor(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
    };
    const ThemeColors& colors = ColorsOf(view.palette());
    // 120 x 30 in the middle.
    EXPECT_EQ(at(4, 40), QColor(255, 0, 0));
    EXPECT_EQ(at(56, 40), QColor(255, 0, 0));
    EXPECT_TRUE(at(90, 40) == colors.checkerLight || at(90, 40) == colors.checkerDark);
    EXPECT_EQ(at(60, 20), colors.canvas);
    EXPECT_EQ(at(60, 60), colors.canvas);
}

TEST_F(GifViewTest, SpaceEnterAndAClickAskForPlay) {
    QSignalSpy asked(&view, &GifView::PlayStopRequested);
    view.show();
    QTest::keyClick(&view, Qt::Key_Space);
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(asked.count(), 0) << "there is nothing to play";
    Show(Write("a.gif", GifBytes(8, 8, {}, WholePictures(8, 8, {5, 5}))));
    QTest::keyClick(&view, Qt::Key_Space);
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_P);
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(asked.count(), 3);

    QSignalSpy dragged(&view, &GifView::DragRequested);
    const QPoint from = view.rect().center();
    const QPoint to = from + QPoint(QApplication::startDragDistance(), 0);
    QTest::mousePress(&view, Qt::LeftButton, {}, from);
    QTest::mouseMove(&view, from + QPoint(1, 0));
    EXPECT_EQ(dragged.count(), 0);
    QTest::mouseMove(&view, to);
    QTest::mouseMove(&view, to + QPoint(5, 5));
    QTest::mouseRelease(&view, Qt::LeftButton, {}, to);
    EXPECT_EQ(dragged.count(), 1);
    EXPECT_EQ(asked.count(), 3) << "a drag is no click";
}

/// All pictures of a file in one pass, as the reader gives them.
QList<QImage> ReadAll(const QString& path, int pictures) {
    GifReader reader(path, {50, 50});
    reader.Start();
    QList<QImage> images;
    QElapsedTimer clock;
    clock.start();
    while (images.size() < pictures && clock.elapsed() < 20000) {
        if (auto picture = reader.Take()) {
            images.append(picture->image.convertToFormat(QImage::Format_RGBA8888));
        } else {
            QTest::qWait(1);
        }
    }
    return images;
}

TEST_F(GifViewTest, PicturesAreThoseOfAForeignDecoder) {
    // Small pictures over larger ones, left, removed and undone, and transparent parts.
    const QString path = Write("parts.gif", GifBytes(24, 16, 0,
                                                     {{0, 0, 24, 16, 1, 5},
                                                      {4, 4, 8, 8, 2, 5, 1},
                                                      {2, 2, 20, 3, 4, 5, 3},
                                                      {0, 10, 24, 2, 7, 5, 2},
                                                      {1, 1, 5, 5, 6, 5, 1},
                                                      {0, 0, 24, 16, 3, 5, 1, true}}));
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"),
                 {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), path,
                  QStringLiteral("-f"), QStringLiteral("rawvideo"), QStringLiteral("-pix_fmt"),
                  QStringLiteral("rgba"), QStringLiteral("-fps_mode"),
                  QStringLiteral("passthrough"), QStringLiteral("-")});
    ASSERT_TRUE(ffmpeg.waitForFinished());
    const QByteArray raw = ffmpeg.readAllStandardOutput();
    ASSERT_EQ(raw.size(), 6 * 24 * 16 * 4);
    const QList<QImage> read = ReadAll(path, 6);
    ASSERT_EQ(read.size(), 6);
    for (int i = 0; i < 6; ++i) {
        const QImage expected(reinterpret_cast<const uchar*>(raw.constData()) + i * 24 * 16 * 4, 24,
                              16, QImage::Format_RGBA8888);
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 24; ++x) {
                const QColor a = read[i].pixelColor(x, y);
                const QColor b = expected.pixelColor(x, y);
                EXPECT_TRUE(a == b || (a.alpha() == 0 && b.alpha() == 0))
                    << i << " at " << x << "," << y;
            }
        }
    }
}

}  // namespace
}  // namespace lumirra
