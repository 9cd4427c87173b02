#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <random>

#include "output/gif/ScalarKernels.h"
#include "output/gif/Yuv.h"

namespace lumirra::gif {
namespace {

/// Each vector unit of this machine against the plain loops, to the bit.
class KernelsTest : public testing::TestWithParam<std::int64_t> {
  protected:
    void SetUp() override {
        hwy::SetSupportedTargetsForTest(GetParam());
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
    void TearDown() override {
        hwy::SetSupportedTargetsForTest(0);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }

    std::uint8_t Level(unsigned range, unsigned from = 0) {
        return static_cast<std::uint8_t>(from + random_() % range);
    }

    /// Levels close together, so that all limits are met; every seventh pixel is transparent.
    Canvas Noise(int width, int height) {
        Canvas canvas{width, height, {}};
        for (int i = 0; i < width * height; ++i) {
            canvas.pixels.push_back(
                random_() % 7 == 0 ? Rgba{} : Rgba{Level(5, 100), Level(9, 90), Level(5, 60), 255});
        }
        return canvas;
    }

    std::mt19937 random_{1};
};

TEST_P(KernelsTest, NearestCenters) {
    const auto colors = [&](std::size_t count) {
        std::vector<Yuv> all;
        for (std::size_t i = 0; i < count; ++i) {
            all.push_back(YuvOf(Rgba{Level(20), Level(20), Level(20), 255}));  // some are equal
        }
        return all;
    };
    for (const std::size_t count : {0, 1, 15, 16, 17, 33, 100}) {
        const std::vector<Yuv> points = colors(count);
        const std::vector<Yuv> centers = colors(1 + count * 2);
        std::vector<std::uint8_t> expected;
        std::vector<std::uint8_t> actual;
        scalar::NearestCenters(points, centers, expected);
        NearestCenters(points, centers, actual);
        EXPECT_EQ(actual, expected) << count;
    }
}

TEST_P(KernelsTest, UnchangedMask) {
    for (int width = 1; width <= 37; ++width) {
        const Canvas a = Noise(width, 5);
        const Canvas b = Noise(width, 5);
        Canvas near = a;
        near.pixels[static_cast<std::size_t>(width)].g ^= 3U;
        for (const Canvas& other : {a, b, near}) {
            for (const DenoiseTuning& tuning : {DenoiseTuning{}, DenoiseTuning{2, 30, 4}}) {
                std::vector<std::uint8_t> expected;
                std::vector<std::uint8_t> actual;
                scalar::UnchangedMask(a, other, tuning, expected);
                UnchangedMask(a, other, tuning, actual);
                EXPECT_EQ(actual, expected) << width;
            }
        }
    }
}

TEST_P(KernelsTest, PreparePixels) {
    for (int width = 0; width <= 37; ++width) {
        const Canvas target = Noise(width, 1);
        const Canvas shown = Noise(width, 1);
        const Canvas drawn = Noise(width, 1);
        std::vector<float> weights;
        std::vector<std::uint8_t> lifetimes;
        for (int x = 0; x < width; ++x) {
            weights.push_back(static_cast<float>(random_() % 100) / 100);
            lifetimes.push_back(Level(5, 1));
        }
        for (int way = 0; way < 6; ++way) {
            PixelRow row{target.Row(0),
                         way % 3 == 0 ? nullptr : shown.Row(0),
                         drawn.Row(0),
                         weights.data(),
                         way % 3 == 1 ? nullptr : lifetimes.data(),
                         static_cast<std::size_t>(width),
                         way > 2};
            std::vector<SearchPixel> expected(static_cast<std::size_t>(width));
            std::vector<SearchPixel> actual(expected.size());
            scalar::PreparePixels(row, {}, expected.data());
            PreparePixels(row, {}, actual.data());
            for (std::size_t x = 0; x < expected.size(); ++x) {
                const auto values = [](const SearchPixel& p) {
                    return std::array{p.target.y, p.target.u, p.target.v, p.weight,
                                      p.shown.y,  p.shown.u,  p.shown.v,  p.keepError};
                };
                EXPECT_EQ(values(actual[x]), values(expected[x])) << width << ", " << x;
            }
        }
    }
}

TEST_P(KernelsTest, SearchLossyLzw) {
    std::vector<Rgba> palette;
    for (int i = 0; i < 90; ++i) {
        palette.push_back({Level(8, 98), Level(14, 86), Level(8, 58), 255});
    }
    const Canvas target = Noise(203, 41);
    const Screen before{Noise(203, 41), Noise(203, 41)};
    for (const bool blank : {false, true}) {
        SearchJob job;
        job.target = &target;
        job.palette = &palette;
        job.blankScreen = blank;
        job.waitForRows = [](int) { return true; };
        job.rowsDone = [](int) {};
        std::array<Screen, 2> screens = {before, before};
        std::array<std::vector<std::uint8_t>, 2> data;
        ASSERT_TRUE(scalar::SearchLossyLzw(job, screens[0], data[0]));
        ASSERT_TRUE(SearchLossyLzw(job, screens[1], data[1]));
        EXPECT_EQ(data[1], data[0]);
        EXPECT_EQ(screens[1].shown.pixels, screens[0].shown.pixels);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryUnit, KernelsTest,
                         testing::ValuesIn(hwy::SupportedAndGeneratedTargets()),
                         [](const auto& unit) { return hwy::TargetName(unit.param); });

}  // namespace
}  // namespace lumirra::gif
