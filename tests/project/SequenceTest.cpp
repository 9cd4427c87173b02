#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <numbers>
#include <random>

#include "project/ExportRequest.h"
#include "project/presets/PresetFit.h"
#include "project/sequence/CrossFade.h"
#include "project/sequence/FrameSequence.h"
#include "project/sequence/LoopFinder.h"

namespace lumirra {
namespace {

/// Frames 0, 1, 2 ... with these delays; 0: none of its own.
FrameSequence Sequence(const std::vector<int>& delays) {
    FrameSequence sequence;
    for (const int delay : delays) {
        sequence.push_back(
            {static_cast<int>(sequence.size()), delay == 0 ? std::nullopt : std::optional(delay)});
    }
    return sequence;
}

std::vector<int> Order(const FrameSequence& sequence) {
    std::vector<int> order;
    for (const ShownFrame& frame : sequence) {
        order.push_back(frame.frame);
    }
    return order;
}

TEST(Sequence, OrderTakesDelaysAlong) {
    const FrameSequence four = Sequence({1, 2, 3, 4});
    EXPECT_EQ(Order(Reversed(four)), (std::vector<int>{3, 2, 1, 0}));
    EXPECT_EQ(Reversed(Reversed(four)), four);
    EXPECT_EQ(Order(ForthAndBack(four)), (std::vector<int>{0, 1, 2, 3, 2, 1}));
    EXPECT_EQ(ForthAndBack(four).back().delay, 2);
    EXPECT_EQ(ForthAndBack(Sequence({1, 2})), Sequence({1, 2}));
    EXPECT_TRUE(ForthAndBack({}).empty());
    EXPECT_EQ(Order(EveryNth(four, 3)), (std::vector<int>{0, 3}));
    EXPECT_EQ(EveryNth(four, 1), four);
    const FrameSequence kept = KeepingTime(Sequence({1, 0, 3, 4}), {0, 3}, 10);
    EXPECT_EQ(kept, (FrameSequence{{0, 14}, {3, 4}}));
    EXPECT_EQ(KeepingTime(four, {0, 1, 2, 3}, 10), four);
}

TEST(Sequence, EveryRunningSumIsRightAtAnySpeed) {
    std::mt19937 random(11);
    std::uniform_int_distribution<int> delay(0, 300);
    std::uniform_real_distribution<double> speed(0.05, 3);
    for (int run = 0; run < 200; ++run) {
        std::vector<int> delays(50);
        for (int& d : delays) {
            d = std::max(3, delay(random)) * (run % 3 == 0 ? 0 : 1);
        }
        const double factor = speed(random);
        const auto fast = AtSpeed(Sequence(delays), factor, 7);
        ASSERT_TRUE(fast) << factor;
        double wanted = 0;
        double got = 0;
        for (std::size_t i = 0; i < delays.size(); ++i) {
            wanted += (delays[i] == 0 ? 7 : delays[i]) / factor;
            got += *(*fast)[i].delay;
            ASSERT_LE(std::abs(got - wanted), 0.5 + 1e-9);
        }
    }
    EXPECT_FALSE(AtSpeed(Sequence({10, 1, 1}), 3, 10)) << "nothing is shown for no time";
    EXPECT_FALSE(AtSpeed(Sequence({65535}), 0.5, 10));
    EXPECT_EQ(HundredthsOf(0.0001), 1);
    EXPECT_EQ(HundredthsOf(1e9), 65535);
}

/// A wave that comes back after `period` pictures, with an encoder's noise.
std::vector<PictureSignature> Film(int count, double period, int noise) {
    std::mt19937 random(3);
    std::uniform_int_distribution<int> grain(-noise, noise);
    std::vector<PictureSignature> film;
    for (int i = 0; i < count; ++i) {
        QImage picture(67, 45, QImage::Format_RGBA8888);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const double phase = 2 * std::numbers::pi * (i / period + x / 67.0);
                const int level = std::clamp(
                    static_cast<int>(128 + 60 * std::sin(phase)) + grain(random), 0, 255);
                picture.setPixelColor(x, y, QColor(level, 255 - level, y));
            }
        }
        film.push_back(SignatureOf(picture));
    }
    return film;
}

TEST(LoopFinder, FindsThePeriodToThePicture) {
    for (const int noise : {0, 6}) {
        const auto loop = FindLoop(Film(90, 17, noise), 5, {});
        ASSERT_TRUE(loop);
        EXPECT_EQ(loop->end - loop->first, 17) << "noise " << noise;
        EXPECT_EQ(FindLoop(Film(90, 17, noise), 20, {})->end -
                      FindLoop(Film(90, 17, noise), 20, {})->first,
                  34);
    }
    EXPECT_FALSE(FindLoop(Film(5, 3, 0), 5, {}));
    EXPECT_FALSE(FindLoop({}, 1, {}));
    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_FALSE(FindLoop(Film(20, 5, 0), 2, stopped.get_token()));
}

// A swing looks the same on its way there and back; only the direction tells.
TEST(LoopFinder, DoesNotTakeTheWayBackForARepetition) {
    std::vector<PictureSignature> film;
    for (int i = 0; i < 60; ++i) {
        QImage picture(32, 32, QImage::Format_RGBA8888);
        const double at = 16 + 12 * std::sin(2 * std::numbers::pi * i / 24);
        for (int y = 0; y < 32; ++y) {
            for (int x = 0; x < 32; ++x) {
                const double away = (x - at) / 4;
                picture.setPixel(x, y, qRgb(static_cast<int>(255 * std::exp(-away * away)), 0, 0));
            }
        }
        film.push_back(SignatureOf(picture));
    }
    EXPECT_EQ(FindLoop(film, 6, {})->end - FindLoop(film, 6, {})->first, 24);
}

TEST(Signature, TellsLikeFromUnlike) {
    QImage grey(5, 3, QImage::Format_RGBA8888);  // smaller than the fields
    grey.fill(QColor(100, 100, 100));
    QImage lighter = grey;
    lighter.fill(QColor(103, 100, 100));
    const auto a = SignatureOf(grey);
    EXPECT_NEAR(DifferenceOf(a, SignatureOf(lighter)), 1, 1e-9);
    EXPECT_EQ(DifferenceOf(a, {}), 255);
    EXPECT_TRUE(SignatureOf(QImage()).empty());
    EXPECT_EQ(WithoutNearDuplicates({a, a, SignatureOf(lighter), a}, 0.5),
              (std::vector<int>{0, 2, 3}));
    EXPECT_EQ(WithoutNearDuplicates({a, SignatureOf(lighter), a}, 2), std::vector<int>{0});
}

TEST(CrossFade, LeadsFromTheEndIntoTheStart) {
    EXPECT_EQ(CrossFade(10, 3), (std::vector<FadedFrame>{{7, 0, 0.25}, {8, 1, 0.5}, {9, 2, 0.75}}));
    EXPECT_TRUE(CrossFade(5, 3).empty());
    QImage from(3, 2, QImage::Format_RGBA8888);
    from.fill(QColor(200, 0, 0, 255));
    QImage into = from;
    into.fill(QColor(0, 0, 0, 0));
    const QColor half = Faded(from, into, 0.5).pixelColor(1, 1);
    EXPECT_NEAR(half.alpha(), 128, 1);
    EXPECT_NEAR(half.red(), 200, 2) << "what is transparent has no colour";
    EXPECT_EQ(Faded(from, into, 0), from);
    EXPECT_TRUE(Faded(from, QImage(2, 2, QImage::Format_RGBA8888), 0.5).isNull());
}

TEST(Presets, SayWhatFits) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("presets.json"));
    const auto write = [&](const QByteArray& text) {
        QFile out(file);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(text);
    };
    const auto own = LoadPresets(file);
    ASSERT_TRUE(own);
    ASSERT_FALSE(own->empty());
    for (const Preset& preset : *own) {
        EXPECT_FALSE(preset.date.isEmpty()) << preset.name.toStdString();
        EXPECT_GT(preset.maxBytes, 0) << preset.name.toStdString();
    }
    write(R"([{"name": "github", "maxBytes": 5}, {"name": "home", "maxSeconds": 2.5}])");
    const auto both = LoadPresets(file);
    ASSERT_TRUE(both);
    EXPECT_EQ(both->size(), own->size() + 1);
    EXPECT_EQ(both->front().maxBytes, 5);
    EXPECT_EQ(both->back().maxSeconds, 2.5);
    for (const char* bad : {"", "{}", R"([{"maxBytes": 5}])", R"([{"name": "a", "maxWidth": -1}])",
                            R"([{"name": "a", "maxWidth": "wide"}])", "[3]"}) {
        write(bad);
        EXPECT_EQ(LoadPresets(file).failure().file, file) << bad;
    }
    Preset small;
    small.maxWidth = small.maxHeight = 128;
    small.maxPixels = 10'000;
    small.maxFrames = 50;
    EXPECT_EQ(FittingSize(small, {100, 90}), (ImageSize{100, 90}));
    EXPECT_EQ(FittingSize(small, {1280, 720}), (ImageSize{128, 72}));
    EXPECT_EQ(FittingSize(small, {720, 1280}), (ImageSize{72, 128}));
    EXPECT_EQ(FittingSize(small, {1000, 1000}), (ImageSize{100, 100}));
    EXPECT_EQ(FittingStep(small, 50), 1);
    EXPECT_EQ(FittingStep(small, 51), 2);
    EXPECT_EQ(FittingStep(Preset(), 5000), 1);
}

TEST(Presets, NameWhatDoesNotFitAndWhatWould) {
    Preset place;
    place.place = QStringLiteral("Home");
    AnimationRequest request{.frames = {}, .destination = {}, .delaySeconds = 0.2};
    for (int i = 0; i < 11; ++i) {
        request.frames.push_back({QString(), ImageSize{300.0 - i, 200}, {}});
    }
    request.frames.back().delay = 100;
    EXPECT_TRUE(MisfitsOf(place, request).empty());
    place.maxFrames = 4;
    place.maxSeconds = 1.5;
    place.maxHeight = 100;
    place.maxBytes = 1000;
    std::vector<Misfit> misfits = MisfitsOf(place, request);
    ASSERT_EQ(misfits.size(), 4U);
    EXPECT_EQ(misfits[0].remedy, 3) << "every third of eleven";
    EXPECT_EQ(misfits[1].remedy, 2) << "2 s and one of 1 s, in 1.5 s";
    EXPECT_EQ(misfits[2].remedy, 150);
    EXPECT_EQ(misfits[3].remedy, 1000);
    EXPECT_TRUE(misfits[2].problem.contains(QStringLiteral("300 × 200")));
    request.maxWidth = 150;
    request.maxBytes = 1000;
    request.delaySeconds = 0.01;
    EXPECT_EQ(MisfitsOf(place, request).size(), 1U);
    request.maxBytes = 1001;
    EXPECT_EQ(MisfitsOf(place, request).back().what, Misfit::What::Bytes);
}

TEST(ExportRequest, TakesTheOutputSettings) {
    ControlValues values;
    values.SetOn(Control::CheckMaxSize, true);
    values.SetNumber(Control::SliderQuality, 44);
    const AnimationRequest request =
        ExportRequest(values, {{.path = QStringLiteral("a.png"), .size = {}, .delay = 7}});
    EXPECT_EQ(request.quality, 44);
    EXPECT_EQ(request.maxBytes, 8'000'000);
    EXPECT_EQ(request.frames.front().delay, 7);
    AnimationRequest slower = request;
    slower.delaySeconds = 3;
    slower.frames.front().delay = 90;
    EXPECT_EQ(SizeRequest(slower), SizeRequest(request));
    slower.quality = 43;
    EXPECT_NE(SizeRequest(slower), SizeRequest(request));

    // Of equal content are files with the same bytes, however they came to be.
    AnimationRequest same = request;
    same.destination = QStringLiteral("b.gif");
    same.threads = 3;
    same.delaySeconds = 3;
    EXPECT_EQ(ContentRequest(same), ContentRequest(request)) << "the frame has its own delay";
    same.loopCount = 2;
    EXPECT_NE(ContentRequest(same), ContentRequest(request));
    EXPECT_EQ(SizeRequest(same), SizeRequest(request));
    same.frames.front().delay = 8;
    EXPECT_NE(ContentRequest(same), ContentRequest(request));
}

}  // namespace
}  // namespace lumirra
