#include <gtest/gtest.h>

#include "imaging/CropGeometry.h"

namespace lumirra::ImageTools {
namespace {

void ExpectRect(const ImageRect& rect, const ImageRect& expected) {
    EXPECT_NEAR(rect.x, expected.x, 1e-9);
    EXPECT_NEAR(rect.y, expected.y, 1e-9);
    EXPECT_NEAR(rect.width, expected.width, 1e-9);
    EXPECT_NEAR(rect.height, expected.height, 1e-9);
}

TEST(CropGeometry, AutomaticCropIsTheLargestCentredRectangle) {
    ExpectRect(AspectCropRect(1920, 1080, 1), {240, 0, 1440, 1080});
    ExpectRect(AspectCropRect(1080, 1920, 3), {0, 0, 1080, 1920});
    ExpectRect(AspectCropRect(1000, 1000, 2), {0, 500.0 / 3, 1000, 2000.0 / 3});
    ExpectRect(AspectCropRect(1280, 720, 0), {280, 0, 720, 720});
    ExpectRect(AspectCropRect(720, 1280, 1), {0, 160, 720, 960});
    ExpectRect(AspectCropRect(300, 500, 0), {0, 100, 300, 300});
    for (const int index : {-1, 4}) {
        ExpectRect(AspectCropRect(640, 480, index), {});
    }
}

TEST(CropGeometry, CustomCropInPerCentAndPixels) {
    ExpectRect(CustomCropRect(1000, 800, 0, 10, 10, 50, 50), {100, 80, 500, 400});
    ExpectRect(CustomCropRect(1000, 800, 1, -100, 0, 500, 400), {-100, 0, 500, 400});
    ExpectRect(CustomCropRect(1000, 800, 2, 1, 2, 3, 4), {});
    EXPECT_EQ(VisibleCropSize({-100, 0, 500, 400}, 1000, 800), (ImageSize{400, 400}));
    EXPECT_EQ(VisibleCropSize({900, 700, 500, 400}, 1000, 800), (ImageSize{100, 100}));
    EXPECT_EQ(VisibleCropSize({1000, 0, 500, 400}, 1000, 800), (ImageSize{}));
}

TEST(CropGeometry, ScaledSizeRoundsHalfAwayFromZero) {
    EffectSettings settings;
    EXPECT_EQ(ScaledFrameSize(1001, 801, settings, 50), (ImageSize{501, 401}));
    settings.autoCropOn = true;
    settings.aspectRatioIndex = 0;
    EXPECT_EQ(ScaledFrameSize(1280, 720, settings, 50), (ImageSize{360, 360}));
    settings.autoCropOn = settings.customCropOn = false;
    EXPECT_EQ(ScaledFrameSize(1280, 720, settings, 50), (ImageSize{1280, 720}));
}

}  // namespace
}  // namespace lumirra::ImageTools
