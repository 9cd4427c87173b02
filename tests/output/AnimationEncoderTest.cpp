#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <mutex>

#include "output/AnimationEstimate.h"
#include "output/AnimationWriter.h"
#include "output/GifDecode.h"
#include "output/GifWriter.h"
#include "output/animation/AnimationEncoder.h"

namespace lumirra {
namespace {

/// A format of a few bytes for each pixel, with soft alpha: what any encoder is handed.
class PlainEncoder final : public AnimationEncoder {
  public:
    QString Name() const override { return QStringLiteral("plain file"); }
    AnimationLimits Limits() const override { return {.longestSide = 100, .softAlpha = true}; }
    double UnchangedBytes(long long) const override { return 0; }

    EncodeSummary Encode(const AnimationOptions& options, const AnimationPorts& ports,
                         const std::stop_token&) const override {
        int made = 0;
        for (int entry = 0; entry < options.entries; ++entry) {
            const auto loaded = ports.load(entry);
            if (!loaded) {
                continue;
            }
            const auto bytes = static_cast<std::size_t>(
                static_cast<double>(options.width * options.height) * options.quality / 100);
            const std::vector<std::uint8_t> data(bytes, loaded->canvas.pixels.front().a);
            if (!ports.write(data)) {
                return {EncodeEnd::WriteFailed, made};
            }
            ports.pictureData(bytes);
            ++made;
        }
        return {EncodeEnd::Complete, made};
    }
};

class AnimationEncoderTest : public testing::Test {
  protected:
    AnimationRequest Request(int frames, const QSize& size) {
        QImage image(size, QImage::Format_RGBA8888);
        image.fill(QColor(10, 20, 30, 70));
        const QString path = folder_.filePath(QStringLiteral("frame.png"));
        EXPECT_TRUE(image.save(path));
        AnimationRequest request;
        request.frames.assign(static_cast<std::size_t>(frames), {path, {}, {}});
        request.destination = folder_.filePath(QStringLiteral("out"));
        return request;
    }

    QTemporaryDir folder_;
};

TEST_F(AnimationEncoderTest, WritingSizeLimitAndEstimateWorkOverAnyFormat) {
    AnimationRequest request = Request(40, {100, 100});
    const PlainEncoder encoder;
    const auto whole = WriteAnimation(encoder, request, {}, {});
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->bytes, 40 * 9000);
    EXPECT_DOUBLE_EQ(whole->seconds, 4);
    QFile file(request.destination);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(1), QByteArray(1, 70)) << "alpha comes as it is in the file";

    request.maxBytes = 100'000;
    const auto limited = WriteAnimation(encoder, request, {}, {});
    ASSERT_TRUE(limited);
    EXPECT_LE(limited->bytes, 100'000);
    EXPECT_GE(limited->bytes, 96'000);
    EXPECT_NEAR(static_cast<double>(EstimateAnimation(encoder, request, {})->bytes), 360'000,
                54'000);

    const auto tooLarge = WriteAnimation(encoder, Request(1, {101, 100}), {}, {});
    ASSERT_FALSE(tooLarge);
    EXPECT_TRUE(tooLarge.failure().message.contains(QStringLiteral("plain file")));
}

TEST_F(AnimationEncoderTest, EachPictureHasItsOwnDelayOrTheCommonOne) {
    GifRequest request = Request(4, {6, 5});
    request.delaySeconds = 0.25;
    request.frames[1].delay = 7;
    request.frames[2].delay = 0;
    request.frames[3].delay = 70000;
    const auto result = WriteGif(request, {}, {});
    ASSERT_TRUE(result);
    const auto gif = test::ParseGifFile(request.destination);
    ASSERT_EQ(gif.images.size(), 4U);
    EXPECT_EQ(gif.images[0].delay, 25);
    EXPECT_EQ(gif.images[1].delay, 7);
    EXPECT_EQ(gif.images[2].delay, 1);
    EXPECT_EQ(gif.images[3].delay, 65535);
    EXPECT_DOUBLE_EQ(result->seconds, 655.68);
}

}  // namespace
}  // namespace lumirra
