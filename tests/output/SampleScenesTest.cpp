#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "output/GifDecode.h"
#include "output/GifQuality.h"
#include "output/GifWriter.h"
#include "output/SampleScenes.h"

namespace lumirra {
namespace {

using test::GifQuality;
using test::SampleScene;

struct Made {
    double bytes = 0;
    GifQuality quality;
};

Made Encode(const QStringList& frames, const QString& folder, int quality) {
    GifRequest request;
    request.frames = FramesAt(frames);
    request.destination = QDir(folder).filePath(QStringLiteral("out.gif"));
    request.quality = quality;
    const auto result = WriteGif(request, {}, {});
    EXPECT_TRUE(result) << qPrintable(result.failure().message);
    std::vector<QImage> images;
    for (const test::GifImage& image : test::ParseGifFile(request.destination).images) {
        images.push_back(image.canvas);
    }
    EXPECT_EQ(static_cast<qsizetype>(images.size()), frames.size());
    return {static_cast<double>(result->bytes), test::CompareImages(images, frames)};
}

/// In the form of the records, so that better figures can be taken over.
std::string FiguresOf(const Made& made) {
    return QString::asprintf("{%.0f, %.4f, %.4f, %.2f, %.3f}", made.bytes, made.quality.ssim,
                             made.quality.ssimb, made.quality.psnrb, made.quality.flick)
        .toStdString();
}

class SampleScenesTest : public testing::TestWithParam<SampleScene> {};

void ExpectNotWorse(const Made& made, const SampleScene::Figures& recorded) {
    SCOPED_TRACE(FiguresOf(made));
    EXPECT_LE(made.bytes, recorded.bytes * 1.02);
    EXPECT_GE(made.quality.ssim, recorded.ssim - 0.0005);
    EXPECT_GE(made.quality.ssimb, recorded.ssimb - 0.0005);
    EXPECT_GE(made.quality.psnrb, recorded.psnrb - 0.1);
    EXPECT_LE(made.quality.flick, recorded.flick * 1.05 + 0.002);
}

// Bytes and looks must not slip.
TEST_P(SampleScenesTest, AsSmallAndAsGoodAsRecorded) {
    const SampleScene& scene = GetParam();
    const QTemporaryDir folder;
    const QStringList frames = test::StoreScene(scene, folder.path());
    ExpectNotWorse(Encode(frames, folder.path(), 90), scene.usual);
    ExpectNotWorse(Encode(frames, folder.path(), 100), scene.best);
}

INSTANTIATE_TEST_SUITE_P(Scenes, SampleScenesTest, testing::ValuesIn(test::SampleScenes()),
                         [](const auto& scene) { return scene.param.name; });

}  // namespace
}  // namespace lumirra
