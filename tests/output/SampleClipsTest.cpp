#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "output/GifDecode.h"
#include "output/GifQuality.h"
#include "output/GifWriter.h"
#include "support/SampleMedia.h"

namespace lumirra {
namespace {

using test::GifQuality;
using test::SampleClip;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSlowBuild = true;
#elif defined(__has_feature)
constexpr bool kSlowBuild = __has_feature(address_sanitizer);
#else
constexpr bool kSlowBuild = false;
#endif

struct Made {
    double bytes = 0;
    GifQuality quality;
};

Made Encode(const QStringList& frames, const QString& folder, int quality) {
    GifRequest request;
    request.framePaths = frames;
    request.destination = QDir(folder).filePath(QStringLiteral("out.gif"));
    request.quality = quality;
    const auto result = WriteGif(request, {}, {});
    EXPECT_TRUE(result) << qPrintable(result.failure().message);
    std::vector<QImage> images;
    for (const test::GifImage& image : test::ParseGifFile(request.destination).images) {
        images.push_back(image.canvas);
    }
    EXPECT_EQ(images.size(), 50U);
    return {static_cast<double>(result->bytes), test::CompareImages(images, frames)};
}

class SampleClipsTest : public testing::TestWithParam<SampleClip> {};

// Bytes and looks must not slip.
TEST_P(SampleClipsTest, SmallerAndBetterThanTheReference) {
    LUMIRRA_NEED_SAMPLE_MEDIA();
    if (kSlowBuild) {
        GTEST_SKIP() << "takes minutes with sanitizers";
    }
    const SampleClip& clip = GetParam();
    const QTemporaryDir folder;
    const QStringList frames =
        test::ExtractFrames(clip, QStringLiteral(LUMIRRA_MEDIA_DIR), folder.path());
    ASSERT_EQ(frames.size(), 50);

    const Made usual = Encode(frames, folder.path(), 90);
    EXPECT_LE(usual.bytes, clip.usual.bytes * (clip.moving ? 0.78 : 0.95));
    EXPECT_GE(usual.quality.ssim, clip.usual.ssim + (clip.moving ? 0.004 : -0.00005));
    EXPECT_GE(usual.quality.psnrb, clip.usual.psnrb + (clip.moving ? 0.7 : 0));
    EXPECT_LE(usual.quality.flick, clip.usual.flick);

    const Made best = Encode(frames, folder.path(), 100);
    EXPECT_LE(best.bytes, clip.best.bytes * (clip.moving ? 0.93 : 1.10));
    EXPECT_GE(best.quality.ssim, clip.best.ssim - 0.00005);
    EXPECT_GE(best.quality.ssimb, clip.best.ssimb - 0.00005);
}

INSTANTIATE_TEST_SUITE_P(Clips, SampleClipsTest, testing::ValuesIn(test::SampleClips()),
                         [](const auto& clip) {
                             std::string name = clip.param.name;
                             std::erase(name, '-');
                             return name;
                         });

}  // namespace
}  // namespace lumirra
