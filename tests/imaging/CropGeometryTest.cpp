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
    ExpectRect(AspectCropRect(1920, 1080, AspectRatio::FourToThree), {240, 0, 1440, 1080});
    ExpectRect(AspectCropRect(1080, 1920, AspectRatio::SixteenToNine), {0, 0, 1080, 1920});
    ExpectRect(AspectCropRect(1000, 1000, AspectRatio::ThreeToTwo),
               {0, 500.0 / 3, 1000, 2000.0 / 3});
    ExpectRect(AspectCropRect(1280, 720, AspectRatio::Square), {280, 0, 720, 720});
    ExpectRect(AspectCropRect(720, 1280, AspectRatio::FourToThree), {0, 160, 720, 960});
    ExpectRect(AspectCropRect(300, 500, AspectRatio::Square), {0, 100, 300, 300});
    for (const int index : {-1, 4}) {
        ExpectRect(AspectCropRect(640, 480, static_cast<AspectRatio>(index)), {});
    }
}

TEST(CropGeometry, CustomCropInPerCentAndPixels) {
    ExpectRect(CustomCropRect(1000, 800, CropUnit::Percent, 10, 10, 50, 50), {100, 80, 500, 400});
    ExpectRect(CustomCropRect(1000, 800, CropUnit::Pixels, -100, 0, 500, 400), {-100, 0, 500, 400});
    ExpectRect(CustomCropRect(1000, 800, static_cast<CropUnit>(2), 1, 2, 3, 4), {});
    EXPECT_EQ(VisibleCropSize({-100, 0, 500, 400}, 1000, 800), (ImageSize{400, 400}));
    EXPECT_EQ(VisibleCropSize({900, 700, 500, 400}, 1000, 800), (ImageSize{100, 100}));
    EXPECT_EQ(VisibleCropSize({1000, 0, 500, 400}, 1000, 800), (ImageSize{}));
}

TEST(CropGeometry, ScaledSizeRoundsHalfAwayFromZero) {
    EffectSettings settings;
    EXPECT_EQ(ScaledFrameSize(1001, 801, settings, 50), (ImageSize{501, 401}));
    settings.autoCropOn = true;
    settings.aspectRatio = AspectRatio::Square;
    EXPECT_EQ(ScaledFrameSize(1280, 720, settings, 50), (ImageSize{360, 360}));
    settings.autoCropOn = settings.customCropOn = false;
    EXPECT_EQ(ScaledFrameSize(1280, 720, settings, 50), (ImageSize{1280, 720}));
}

}  // namespace
}  // namespace lumirra::ImageTools
