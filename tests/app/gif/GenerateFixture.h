#pragma once

#include <QFile>
#include <QImageReader>
#include <QSettings>
#include <QTest>
#include <random>

#include "app/WindowFixture.h"
#include "views/gif/GifView.h"

namespace lumirra {

inline QByteArray BytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A window that is given frames and generates a GIF of them.
class GenerateStory : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        QSettings().clear();
    }
    void TearDown() override { QSettings().clear(); }

    /// A picture of one colour with a lighter square that moves to the right.
    static QImage Picture(int number, QSize size) {
        QImage image(size, QImage::Format_RGBA8888);
        image.fill(QColor(40, 90, 30 + 10 * (number % 20)));
        for (int y = 4; y < 14; ++y) {
            for (int x = 0; x < 10; ++x) {
                image.setPixelColor((3 * number + x) % size.width(), y, QColor(250, 240, 60));
            }
        }
        return image;
    }
    /// By hand or automatically, as a person would: opens them and presses the button.
    void Add(const QList<QImage>& frames) {
        QStringList paths;
        for (const QImage& frame : frames) {
            paths << pictures.filePath(QStringLiteral("%1.png").arg(++made_));
            ASSERT_TRUE(frame.save(paths.last()));
        }
        const int before = window.State().frames.Count();
        Press("buttonCloseVideo");
        OpenImages(paths);
        if (frames.size() > 1 && before > 0) {
            dialogs.answers.push_front(Dialogs::SecondButton);  // those in the list stay
        }
        Press(frames.size() > 1 ? "buttonAddFramesAutomatically" : "buttonAddFrame");
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return !Busy() && window.State().frames.Count() == before + frames.size(); },
            60000));
        dialogs.messages.clear();
    }
    void AddFrames(int count, QSize size = {64, 48}) {
        QList<QImage> frames;
        for (int i = 0; i < count; ++i) {
            frames << Picture(i, size);
        }
        Add(frames);
    }
    /// Grain, which no quality makes small.
    void AddNoise(int count, QSize size) {
        std::mt19937 random(5);
        QList<QImage> frames;
        for (int i = 0; i < count; ++i) {
            QImage image(size, QImage::Format_RGBA8888);
            for (int y = 0; y < size.height(); ++y) {
                for (int x = 0; x < size.width(); ++x) {
                    image.setPixelColor(x, y, QColor::fromRgb(static_cast<QRgb>(random())));
                }
            }
            frames << image;
        }
        Add(frames);
    }
    QString Gif() const { return folder.filePath(QStringLiteral("tempGif.gif")); }
    GifView& View() { return Find<GifView>("gifPreview"); }
    bool Busy() const { return window.RunningJob() != BackgroundJob::Kind::None; }
    void Generate() {
        Press("buttonGeneratePreview");
        ASSERT_TRUE(QTest::qWaitFor([this] { return !Busy() && !View().IsLoading(); }, 60000));
    }
    QString ButtonText(const char* outlet) { return Find<QAbstractButton>(outlet).text(); }
    static QSize SizeOf(const QString& path) { return QImageReader(path).size(); }
    /// What was printed on standard output meanwhile.
    template <typename Doing>
    static std::string Printed(Doing doing) {
        testing::internal::CaptureStdout();
        doing();
        return testing::internal::GetCapturedStdout();
    }

    QTemporaryDir pictures;

  private:
    int made_ = 0;
};

}  // namespace lumirra
