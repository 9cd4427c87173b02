#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <set>
#include <string>

#include "output/GifDecode.h"
#include "output/gif/Masking.h"
#include "output/gif/Yuv.h"
#include "output/gif/lzw/LossyLzwSearch.h"
#include "output/gif/palette/PaletteQuantizer.h"

namespace lumirra::gif {
namespace {

Canvas Blank(int width, int height) {
    Canvas picture{width, height, {}};
    picture.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    return picture;
}

std::vector<Rgba> RandomPalette(std::size_t colors, std::mt19937& random) {
    std::vector<Rgba> palette;
    for (std::size_t i = 0; i < colors; ++i) {
        palette.push_back({static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(random() % 256),
                           static_cast<std::uint8_t>(random() % 256), 255});
    }
    return palette;
}

struct Searched {
    std::vector<std::uint8_t> indices;
    std::vector<std::uint8_t> data;
    Screen screen;
};

Searched Search(const Canvas& target, const std::vector<Rgba>& palette, bool exact,
                const Screen* before, const SearchTuning& tuning = {}) {
    SearchJob job;
    job.tuning = tuning;
    job.target = &target;
    job.palette = &palette;
    job.exact = exact;
    job.blankScreen = before == nullptr;
    job.waitForRows = [](int) { return true; };
    job.rowsDone = [](int) {};
    Searched result;
    result.screen = before != nullptr ? *before
                                      : Screen{Blank(target.width, target.height),
                                               Blank(target.width, target.height)};
    EXPECT_TRUE(SearchLossyLzw(job, result.screen, result.data));
    result.indices = test::UnpackCodes(result.data);
    return result;
}

// Every palette size crosses another set of code widths; the longer pictures fill the dictionary.
TEST(LossyLzwSearchTest, PlainReaderGetsTheExactPixelsBack) {
    std::mt19937 random(1);
    for (const std::size_t colors : {1, 2, 3, 4, 5, 16, 17, 100, 254, 255}) {
        const std::vector<Rgba> palette = RandomPalette(colors, random);
        for (const int width : {1, 7, 300}) {
            Canvas target = Blank(width, 25000 / width / (colors > 16 ? 1 : 4));
            std::vector<std::uint8_t> wanted;
            unsigned run = 0;
            std::size_t color = 0;
            for (Rgba& pixel : target.pixels) {
                if (run-- == 0) {
                    run = static_cast<unsigned>(random() % 4) * static_cast<unsigned>(random() % 9);
                    color = random() % colors;
                }
                pixel = palette[color];
                wanted.push_back(static_cast<std::uint8_t>(color));
            }
            const Searched first = Search(target, palette, true, nullptr);
            ASSERT_TRUE(first.indices == wanted) << colors << " colours, width " << width;
            EXPECT_EQ(first.screen.shown.pixels, target.pixels);

            // Over a screen that agrees in places, a pixel is kept only where it is right already.
            Screen half = first.screen;
            for (std::size_t i = 0; i < half.shown.Size(); i += 1 + random() % 40) {
                half.shown.pixels[i] = palette[random() % colors];
            }
            const Searched second = Search(target, palette, true, &half);
            ASSERT_EQ(second.indices.size(), wanted.size());
            for (std::size_t i = 0; i < wanted.size(); ++i) {
                const bool kept = second.indices[i] == colors;
                ASSERT_TRUE(kept ? half.shown.pixels[i] == target.pixels[i]
                                 : second.indices[i] == wanted[i]);
            }
            EXPECT_EQ(second.screen.shown.pixels, target.pixels);

            // What stands already need not be in the palette, and what is near it is not right.
            Canvas odd = target;
            Screen standing = half;
            for (std::size_t i = 0; i < odd.Size(); i += 1 + random() % 5) {
                odd.pixels[i].b ^= 1U;
                standing.shown.pixels[i] = odd.pixels[i];
            }
            EXPECT_EQ(Search(odd, palette, true, &standing).screen.shown.pixels, odd.pixels);
        }
    }
}

TEST(LossyLzwSearchTest, LossyScreenIsWhatTheReaderSees) {
    std::mt19937 random(2);
    const std::vector<Rgba> palette = RandomPalette(40, random);
    Canvas target = Blank(90, 60);
    for (std::size_t i = 0; i < target.Size(); ++i) {
        const auto level = static_cast<std::uint8_t>(i % 90 * 2 + random() % 20);
        target.pixels[i] =
            i % 11 == 0 ? Rgba{} : Rgba{level, 100, static_cast<std::uint8_t>(i / 90), 255};
    }
    const Searched result = Search(target, palette, false, nullptr);
    ASSERT_EQ(result.indices.size(), target.Size());
    for (std::size_t i = 0; i < target.Size(); ++i) {
        const Rgba shown = result.indices[i] == 40 ? Rgba{} : palette[result.indices[i]];
        ASSERT_EQ(shown, result.screen.shown.pixels[i]);
        ASSERT_EQ(shown.a, target.pixels[i].a) << "neither holes filled nor pixels dropped";
    }
}

/// Bits that a plain coder, always taking the longest string known, makes of these pixels.
int PlainBits(const std::vector<std::uint8_t>& indices, int codeBits) {
    std::set<std::string> known;
    int next = (1 << codeBits) + 2;
    int width = codeBits + 1;
    int bits = width;  // the clear code
    std::string string;
    for (const std::uint8_t index : indices) {
        string.push_back(static_cast<char>(index));
        if (string.size() == 1 || known.count(string) != 0) {
            continue;
        }
        bits += width;
        known.insert(string);
        width += ++next > 1 << width ? 1 : 0;
        string.assign(1, static_cast<char>(index));
    }
    return bits + 2 * width;  // the last string and the end code
}

// No choice of colours for so small a picture can be much better than the one searched for, error
// and bits weighed as the search is told to.
TEST(LossyLzwSearchTest, CloseToTheBestOfAllPictures) {
    std::mt19937 random(8);
    double searched = 0;
    double least = 0;
    for (int round = 0; round < 40; ++round) {
        const auto near = [&](int level) {
            return static_cast<std::uint8_t>(level + random() % 9);
        };
        std::vector<Rgba> palette;
        for (int c = 0; c < 3; ++c) {
            palette.push_back({near(100 + 8 * c), near(100), near(100), 255});
        }
        Canvas target = Blank(9, 1);
        for (Rgba& pixel : target.pixels) {
            pixel = {near(100 + static_cast<int>(random() % 17)), near(100), near(100), 255};
        }
        SearchJob job;
        job.tuning.lambda = 15;    // enough for strings to be worth an error
        job.tuning.diffusion = 0;  // so that errors are those of the target itself
        job.tuning.bandDiffusion = 0;
        std::vector<float> weights(target.Size());
        MaskingRow(target, 0, weights.data());
        const auto cost = [&](const std::vector<std::uint8_t>& indices) {
            double error = 0;
            for (std::size_t i = 0; i < indices.size(); ++i) {
                error += static_cast<double>(weights[i]) *
                         SquaredDistance(YuvOf(target.pixels[i]), YuvOf(palette[indices[i]]));
            }
            return error + static_cast<double>(job.tuning.lambda) * PlainBits(indices, 2);
        };
        double best = std::numeric_limits<double>::max();
        for (int code = 0; code < 19683; ++code) {
            std::vector<std::uint8_t> indices;
            for (int i = 0, rest = code; i < 9; ++i, rest /= 3) {
                indices.push_back(static_cast<std::uint8_t>(rest % 3));
            }
            best = std::min(best, cost(indices));
        }
        const Searched result = Search(target, palette, false, nullptr, job.tuning);
        const double found = cost(result.indices);
        EXPECT_GE(found, best - 1e-6);
        EXPECT_LE(found, best * 1.5) << round;
        searched += found;
        least += best;
    }
    EXPECT_LE(searched, least * 1.09);
}

TEST(LossyLzwSearchTest, KeptPictureCostsAlmostNothing) {
    std::mt19937 random(3);
    const std::vector<Rgba> palette = RandomPalette(200, random);
    Canvas target = Blank(640, 360);
    for (Rgba& pixel : target.pixels) {
        pixel = palette[random() % 200];
    }
    const Searched first = Search(target, palette, true, nullptr);
    const Searched second = Search(target, palette, true, &first.screen);
    EXPECT_LT(second.data.size(), 1200U);
    EXPECT_EQ(second.screen.shown.pixels, target.pixels);
}

TEST(PaletteTest, FewColorsAreKeptAndCounted) {
    std::mt19937 random(4);
    const std::vector<Rgba> colors = RandomPalette(255, random);
    Canvas picture = Blank(51, 20);
    for (std::size_t i = 0; i < picture.Size(); ++i) {
        picture.pixels[i] = colors[i % 255];
    }
    EXPECT_EQ(FewColors(picture, 255), colors);
    EXPECT_EQ(FewColors(picture, 254), std::nullopt);
    EXPECT_TRUE(FewColors(Blank(3, 3), 255)->empty());
    EXPECT_EQ(QuantizePalette(CountColors(picture, {}), 255).size(), 255U);
    EXPECT_FALSE(QuantizePalette(CountColors(Blank(3, 3), {}), 255).empty());
}

double ErrorOf(const std::vector<Yuv>& points, const std::vector<Yuv>& centers) {
    double sum = 0;
    for (const Yuv& point : points) {
        float least = std::numeric_limits<float>::max();
        for (const Yuv& center : centers) {
            least = std::min(least, SquaredDistance(point, center));
        }
        sum += least;
    }
    return sum;
}

TEST(PaletteTest, CloseToTheBestOfAllPartitions) {
    std::mt19937 random(5);
    for (int round = 0; round < 20; ++round) {
        Canvas picture = Blank(9, 1);
        std::vector<Yuv> points;
        for (Rgba& pixel : picture.pixels) {
            const auto level = [&] { return static_cast<std::uint8_t>(random() % 256); };
            pixel = {level(), level(), level(), 255};
            points.push_back(YuvOf(pixel));
        }
        // Three groups: 3^9 ways to deal nine points out.
        double best = std::numeric_limits<double>::max();
        for (int code = 0; code < 19683; ++code) {
            std::array<Yuv, 3> sums{};
            std::array<float, 3> counts{};
            for (int i = 0, rest = code; i < 9; ++i, rest /= 3) {
                const auto group = static_cast<std::size_t>(rest % 3);
                sums[group].y += points[static_cast<std::size_t>(i)].y;
                sums[group].u += points[static_cast<std::size_t>(i)].u;
                sums[group].v += points[static_cast<std::size_t>(i)].v;
                ++counts[group];
            }
            std::vector<Yuv> centers;
            for (std::size_t g = 0; g < 3; ++g) {
                if (counts[g] > 0) {
                    centers.push_back(
                        {sums[g].y / counts[g], sums[g].u / counts[g], sums[g].v / counts[g]});
                }
            }
            best = std::min(best, ErrorOf(points, centers));
        }
        std::vector<Yuv> made;
        for (const Rgba& color : QuantizePalette(CountColors(picture, {}), 3)) {
            made.push_back(YuvOf(color));
        }
        EXPECT_LE(made.size(), 3U);
        EXPECT_LT(ErrorOf(points, made), best * 1.6 + 10) << round;
    }
}

TEST(PaletteTest, FlatAreasGetTheirVeryColor) {
    std::mt19937 random(6);
    Canvas picture = Blank(100, 100);
    for (std::size_t i = 0; i < picture.Size(); ++i) {
        const auto grain = static_cast<std::uint8_t>(random() % 8);
        picture.pixels[i] = i % 3 == 0 ? Rgba{static_cast<std::uint8_t>(random() % 256),
                                              static_cast<std::uint8_t>(random() % 256), grain, 255}
                                       : Rgba{201, 55, 17, 255};
    }
    const std::vector<Rgba> palette = QuantizePalette(CountColors(picture, {}), 16);
    EXPECT_NE(std::find(palette.begin(), palette.end(), Rgba{201, 55, 17, 255}), palette.end());
}

}  // namespace
}  // namespace lumirra::gif
