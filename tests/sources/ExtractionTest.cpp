#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <stdexcept>
#include <vector>

#include "imaging/Render.h"
#include "sources/Extraction.h"
#include "sources/FrameFiles.h"
#include "sources/VideoReader.h"

namespace lumirra {
namespace {

QByteArray Bytes(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

class Extraction : public testing::Test {
  protected:
    Extraction() {
        job_.directory = folder_.path();
        job_.threads = 2;
        job_.settings.width = 64;
        job_.settings.height = 48;
    }

    QString SavePicture(const char* name, int width, int height, QColor color) {
        QImage image(width, height, QImage::Format_RGBA8888);
        image.fill(color);
        const QString path = pictures_.filePath(QLatin1String(name));
        EXPECT_TRUE(image.save(path, "png"));
        return path;
    }

    ExtractionResult Run(std::stop_token stop = {}) {
        told_.clear();
        progress_.clear();
        return RunExtraction(
            job_, std::move(stop),
            [this](const ExtractedFrame& frame) { told_.append(frame.path); },
            [this](const ExtractionProgress& progress) { progress_.push_back(progress); });
    }

    std::vector<double> Percents() const {
        std::vector<double> percents;
        for (const ExtractionProgress& progress : progress_) {
            percents.push_back(progress.percent);
        }
        return percents;
    }

    /// Frames were told in order, sort by name, and are all that lies in the directory.
    void ExpectWhole(const ExtractionResult& result) const {
        EXPECT_EQ(result.framePaths, told_);
        QStringList files;
        for (const QString& path : told_) {
            files << QFileInfo(path).fileName() << QFileInfo(ThumbnailPath(path)).fileName();
        }
        files.sort();
        EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name), files);
        EXPECT_TRUE(std::is_sorted(told_.begin(), told_.end()));
    }

    QTemporaryDir folder_;
    QTemporaryDir pictures_;
    ExtractionJob job_;
    QStringList told_;
    std::vector<ExtractionProgress> progress_;
};

TEST_F(Extraction, PicturesBecomeFramesOfTheirOwnSize) {
    job_.imagePaths = {SavePicture("c.png", 40, 30, Qt::red),
                       SavePicture("a.png", 20, 50, Qt::green),
                       SavePicture("b.png", 8, 8, Qt::blue)};
    job_.settings.resizePercent = 50;
    for (job_.threads = 0; job_.threads < 4; ++job_.threads) {
        const ExtractionResult result = Run();
        ASSERT_EQ(result.framePaths.size(), 3);
        EXPECT_TRUE(result.problems.empty());
        EXPECT_FALSE(result.stopped);
        EXPECT_EQ(Percents(), (std::vector<double>{0, 33, 66}));
        EXPECT_EQ(progress_.back().total, 3);
        ExpectWhole(result);
        const std::vector<std::pair<QSize, QRgb>> expected{
            {{20, 15}, qRgb(255, 0, 0)}, {{10, 25}, qRgb(0, 255, 0)}, {{4, 4}, qRgb(0, 0, 255)}};
        for (int i = 0; i < 3; ++i) {
            const QImage frame(result.framePaths.at(i));
            EXPECT_EQ(frame.size(), expected[static_cast<std::size_t>(i)].first);
            EXPECT_EQ(frame.pixel(1, 1), expected[static_cast<std::size_t>(i)].second);
            RemoveFrame(result.framePaths.at(i));
        }
    }
}

TEST_F(Extraction, UnreadablePicturesAreLeftOutAndTold) {
    job_.imagePaths = {pictures_.filePath(QStringLiteral("missing.png")),
                       SavePicture("a.png", 20, 50, Qt::green), pictures_.path()};
    const ExtractionResult result = Run();
    EXPECT_EQ(result.framePaths.size(), 1);
    ASSERT_EQ(result.problems.size(), 2U);
    EXPECT_EQ(result.problems[0].kind, Failure::Kind::NotFound);
    EXPECT_EQ(result.problems[1].file, pictures_.path());
    EXPECT_EQ(progress_.size(), 3U);
    ExpectWhole(result);
    job_.imagePaths.clear();
    EXPECT_TRUE(Run().framePaths.isEmpty());
}

TEST_F(Extraction, APictureWithoutAreaEndsTheRun) {
    // At 10 per cent the second picture is less than half a pixel high.
    job_.imagePaths = {SavePicture("a.png", 40, 40, Qt::red), SavePicture("b.png", 40, 4, Qt::red),
                       SavePicture("c.png", 40, 40, Qt::red)};
    job_.settings.resizePercent = 10;
    const ExtractionResult result = Run();
    EXPECT_EQ(result.framePaths.size(), 1);
    EXPECT_EQ(result.problems.size(), 1U);
    EXPECT_FALSE(result.stopped);
    ExpectWhole(result);
}

TEST_F(Extraction, ADirectoryThatTakesNoFilesIsToldOnce) {
    job_.imagePaths = {SavePicture("a.png", 40, 40, Qt::red),
                       SavePicture("b.png", 40, 40, Qt::red)};
    job_.directory = folder_.filePath(QStringLiteral("none"));
    const ExtractionResult result = Run();
    EXPECT_TRUE(result.framePaths.isEmpty());
    ASSERT_EQ(result.problems.size(), 1U);
    EXPECT_EQ(result.problems[0].kind, Failure::Kind::NotWritable);
    job_.videoPath = pictures_.filePath(QStringLiteral("none.mp4"));
    EXPECT_EQ(Run().problems.size(), 1U);
}

TEST_F(Extraction, StopsAtTheNextFrameAndKeepsTheStored) {
    for (int i = 0; i < 40; ++i) {
        job_.imagePaths << SavePicture(qPrintable(QString::number(i)), 40, 40, Qt::red);
    }
    std::stop_source stop;
    const ExtractionResult result = RunExtraction(job_, stop.get_token(),
                                                  [&](const ExtractedFrame& frame) {
                                                      told_.append(frame.path);
                                                      if (told_.size() == 5) {
                                                          stop.request_stop();
                                                      }
                                                  },
                                                  {});
    EXPECT_TRUE(result.stopped);
    EXPECT_EQ(result.framePaths.size(), 5);
    ExpectWhole(result);
    EXPECT_THROW(
        static_cast<void>(RunExtraction(
            job_, {}, [](const ExtractedFrame&) { throw std::runtime_error("callback"); }, {})),
        std::runtime_error);
}

TEST_F(Extraction, VideoThereAndBack) {
    job_.videoPath = QStringLiteral(LUMIRRA_MEDIA_DIR "/counter-30fps-bframes.mp4");
    job_.settings.width = 320;
    job_.settings.height = 180;
    job_.settings.fixedNumber = true;
    job_.settings.frameCount = 7;
    job_.settings.playMode = PlayMode::ForthAndBack;
    job_.startPosition = 0.1F;
    job_.endPosition = 0.9F;
    const ExtractionResult result = Run();
    ASSERT_EQ(result.framePaths.size(), 13);
    EXPECT_TRUE(result.problems.empty());
    EXPECT_DOUBLE_EQ(progress_[0].percent, 100.0 / 13);
    EXPECT_EQ(progress_[12].percent, 100);
    ExpectWhole(result);
    const auto plan = PlanExtraction(job_.settings, 3, 0.1F, 0.9F);
    auto reader = VideoReader::Open(job_.videoPath);
    ASSERT_TRUE(plan && reader);
    VideoReader video = *std::move(reader);
    for (int i = 0; i < 13; ++i) {
        // Read anew, one at a time: the way back is the same as if it had been.
        const QImage frame = ImageTools::RenderFrameToSize(video.At(plan->PositionOf(i)).image,
                                                           job_.settings.effects, 320, 180);
        EXPECT_EQ(QImage(result.framePaths.at(i)).convertToFormat(QImage::Format_RGBA8888), frame)
            << i;
        EXPECT_EQ(Bytes(result.framePaths.at(i)), Bytes(result.framePaths.at(12 - i)));
        EXPECT_EQ(Bytes(ThumbnailPath(result.framePaths.at(i))),
                  Bytes(ThumbnailPath(result.framePaths.at(12 - i))));
        // The clip counts its frames in blocks of 40 columns at the bottom.
        int number = 0;
        for (int bit = 0; bit < 8; ++bit) {
            number = 2 * number + (qGreen(frame.pixel(40 * bit + 20, 160)) > 128 ? 1 : 0);
        }
        EXPECT_EQ(number, static_cast<int>(plan->PositionOf(i) * 3 * 30 + 1e-4)) << i;
    }
}

}  // namespace
}  // namespace lumirra
