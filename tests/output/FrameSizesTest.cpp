#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <vector>

#include "output/FrameSizes.h"

namespace lumirra {
namespace {

class FrameSizesTest : public testing::Test {
  protected:
    /// Files of these sizes; an empty size makes one that is no picture.
    FrameSizes Files(const std::vector<QSize>& sizes) {
        QStringList paths;
        for (const QSize size : sizes) {
            const QString path = folder_.filePath(QStringLiteral("%1.png").arg(count_++));
            if (size.isEmpty()) {
                QFile file(path);
                EXPECT_TRUE(file.open(QIODevice::WriteOnly));
                file.write("no picture");
            } else {
                QImage image(size, QImage::Format_RGB32);
                image.fill(Qt::gray);
                image.setDotsPerMeterX(5669);
                EXPECT_TRUE(image.save(path));
            }
            paths << path;
        }
        return SizesOf(FramesAt(paths));
    }

    QTemporaryDir folder_;
    int count_ = 0;
};

TEST_F(FrameSizesTest, LargestAndSmallestTakeEachSideApart) {
    const FrameSizes files = Files({{40, 30}, {}, {20, 10}, {30, 50}});
    EXPECT_EQ(VideoTools::LargestFrameSize(files), (ImageSize{40, 50}));
    EXPECT_EQ(VideoTools::SmallestFrameSize(files), (ImageSize{20, 10}));
    EXPECT_EQ(VideoTools::LargestFrameSize({}), (ImageSize{0, 0}));
    EXPECT_EQ(VideoTools::SmallestFrameSize(Files({{}})), (ImageSize{200000, 200000}));
}

TEST_F(FrameSizesTest, CommonRatioFollowsTheMajority) {
    const auto ratio = [this](const std::vector<QSize>& sizes) {
        return VideoTools::CommonAspectRatio(Files(sizes));
    };
    EXPECT_EQ(ratio({{100, 100}, {160, 90}, {90, 160}}), 1.0F);
    EXPECT_EQ(ratio({{192, 108}, {}, {128, 72}}), 192.0F / 108.0F);
    EXPECT_EQ(ratio({{400, 100}, {40, 30}, {90, 100}}), 40.0F / 30.0F) << "two of three are wide";
    EXPECT_EQ(ratio({{100, 400}, {30, 40}, {100, 90}}), 30.0F / 40.0F) << "two of three are high";
    // Neither wide frame is nearer to square than the mean, pulled down by the high one.
    EXPECT_EQ(ratio({{40, 10}, {30, 10}, {10, 100}}), (4.0F + 3.0F + 0.1F) / 3.0F);
}

TEST_F(FrameSizesTest, DifferentSizes) {
    EXPECT_FALSE(VideoTools::FramesHaveDifferentSizes(Files({{5, 4}})));
    EXPECT_FALSE(VideoTools::FramesHaveDifferentSizes(Files({{5, 4}, {5, 4}})));
    EXPECT_TRUE(VideoTools::FramesHaveDifferentSizes(Files({{5, 4}, {5, 4}, {4, 5}})));
    EXPECT_TRUE(VideoTools::FramesHaveDifferentSizes(Files({{5, 4}, {}})));
    EXPECT_TRUE(VideoTools::FramesHaveDifferentSizes(Files({{}, {5, 4}})));
    EXPECT_FALSE(VideoTools::FramesHaveDifferentSizes(Files({{}, {}})));
}

// A caller that knows the sizes need not have the headers read, but a file that is gone is gone.
TEST_F(FrameSizesTest, KnownSizesAreTakenForFilesThatAreThere) {
    QFile file(folder_.filePath(QStringLiteral("text")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const FrameSizes sizes =
        SizesOf({{file.fileName(), ImageSize{7, 5}, {}},
                 {folder_.filePath(QStringLiteral("missing")), ImageSize{7, 5}, {}}});
    EXPECT_EQ(sizes, (FrameSizes{ImageSize{7, 5}, std::nullopt}));
}

TEST_F(FrameSizesTest, RatioCropIsCentred) {
    EXPECT_EQ(ImageTools::RatioCropRect(1000, 500, 1.0F), (ImageRect{250, 0, 500, 500}));
    EXPECT_EQ(ImageTools::RatioCropRect(500, 1000, 1.0F), (ImageRect{0, 250, 500, 500}));
    EXPECT_EQ(ImageTools::RatioCropRect(300, 400, 0.5F), (ImageRect{50, 0, 200, 400}));
    EXPECT_EQ(ImageTools::RatioCropRect(1920, 1080, 1920.0F / 1080.0F),
              (ImageRect{0, 0, 1920, 1080}));
}

}  // namespace
}  // namespace lumirra
