#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <new>
#include <thread>
#include <vector>

#include "sources/Extraction.h"
#include "sources/extraction/OrderedWork.h"

namespace lumirra {
namespace {

ExtractionSettings Number(float count, PlayMode mode = PlayMode::Forward) {
    ExtractionSettings settings;
    settings.fixedNumber = true;
    settings.frameCount = count;
    settings.playMode = mode;
    return settings;
}

ExtractionSettings Interval(double seconds, PlayMode mode = PlayMode::Forward) {
    ExtractionSettings settings;
    settings.intervalSeconds = seconds;
    settings.playMode = mode;
    return settings;
}

std::vector<double> Positions(const Outcome<ExtractionPlan>& plan) {
    std::vector<double> positions;
    for (int i = 0; plan && i < plan->Total(); ++i) {
        positions.push_back(plan->PositionOf(i));
    }
    return positions;
}

TEST(ExtractionPlan, FixedNumberStepsInSinglePrecision) {
    const auto five = PlanExtraction(Number(5), 10, 0.2F, 0.6F);
    ASSERT_TRUE(five);
    const float step = (0.6F - 0.2F) / 4;
    EXPECT_EQ(five->step, static_cast<double>(step));
    const auto positions = Positions(five);
    ASSERT_EQ(positions.size(), 5U);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(positions[static_cast<std::size_t>(i)],
                  i * static_cast<double>(step) + static_cast<double>(0.2F));
    }
    EXPECT_EQ(Positions(PlanExtraction(Number(1), 10, 0.25F, 1)), std::vector<double>{0.25});
    EXPECT_EQ(Positions(PlanExtraction(Number(1, PlayMode::ForthAndBack), 10, 0.25F, 1)),
              std::vector<double>{0.25});
    EXPECT_EQ(PlanExtraction(Number(10000), 1, 0, 1)->Total(), 10000);
}

TEST(ExtractionPlan, IntervalIsTheLargestDistance) {
    const auto eleven = PlanExtraction(Interval(1), 10, 0, 1);
    ASSERT_TRUE(eleven);
    EXPECT_EQ(eleven->count, 11);
    EXPECT_DOUBLE_EQ(eleven->PositionOf(10) * 10, 10);
    const auto five = PlanExtraction(Interval(3), 10, 0, 1);
    ASSERT_TRUE(five);
    EXPECT_EQ(five->count, 5);
    EXPECT_DOUBLE_EQ(five->step * 10, 2.5);
    EXPECT_EQ(Positions(PlanExtraction(Interval(0.1), 0, 0.5F, 1)), std::vector<double>{0.5});
    EXPECT_EQ(Positions(PlanExtraction(Interval(50), 10, 0, 1)), (std::vector<double>{0, 1}));
    // Half a clip: the span is widened from single precision.
    const auto part = PlanExtraction(Interval(0.1), 7.5, 0.1F, 0.7F);
    const double span = static_cast<double>(0.7F - 0.1F);
    ASSERT_TRUE(part);
    EXPECT_EQ(part->count, static_cast<int>(std::ceil(7.5 * span / 0.1)) + 1);
    EXPECT_EQ(part->step, span / (part->count - 1));
}

TEST(ExtractionPlan, CircularGoesBackToTheStart) {
    const auto plan = PlanExtraction(Number(3, PlayMode::ForthAndBack), 10, 0, 1);
    EXPECT_EQ(Positions(plan), (std::vector<double>{0, 0.5, 1, 0.5, 0}));
    std::vector<double> percents;
    for (int i = 0; i < plan->Total(); ++i) {
        percents.push_back(plan->PercentAfter(i));
    }
    EXPECT_EQ(percents, (std::vector<double>{20, 40, 60, 80, 100}));
}

TEST(ExtractionPlan, HostileValuesAreRefusedAndCostNoMemory) {
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinite = std::numeric_limits<float>::infinity();
    for (const float number : {0.0F, -3.0F, kNan, -kInfinite}) {
        EXPECT_EQ(PlanExtraction(Number(number), 10, 0, 1).failure().kind, Failure::Kind::Invalid);
    }
    for (const double seconds : {0.0, -1.0, static_cast<double>(kNan)}) {
        EXPECT_EQ(PlanExtraction(Interval(seconds), 10, 0, 1).failure().kind,
                  Failure::Kind::Invalid);
    }
    EXPECT_EQ(PlanExtraction(Number(5), 10, kNan, 1).failure().kind, Failure::Kind::Invalid);
    EXPECT_EQ(PlanExtraction(Number(5), 10, 0, kInfinite).failure().kind, Failure::Kind::Invalid);
    EXPECT_EQ(PlanExtraction(Number(kInfinite), 10, 0, 1).failure().kind, Failure::Kind::TooLarge);
    EXPECT_EQ(PlanExtraction(Interval(1e-300), 1e6, 0, 1).failure().kind, Failure::Kind::TooLarge);
    EXPECT_EQ(PlanExtraction(Interval(0.1), static_cast<double>(kNan), 0, 1)->count, 1);
    EXPECT_EQ(PlanExtraction(Interval(0.1), 10, 0.8F, 0.2F)->count, 1);
    const auto days = PlanExtraction(Interval(0.1, PlayMode::ForthAndBack), 1e6, 0, 1);
    ASSERT_TRUE(days);
    EXPECT_EQ(days->Total(), 20'000'001);
    EXPECT_NEAR(days->PositionOf(10'000'000), 1, 1e-9);
    EXPECT_EQ(days->PositionOf(20'000'000), 0);
}

TEST(OrderedWork, DeliversInOrderWithFewUnderWay) {
    for (const int threads : {1, 2, 5}) {
        constexpr int kCount = 200;
        int next = 0;
        int delivered = 0;
        std::atomic<int> underWay{0};
        std::atomic<int> most{0};
        OrderedWork<int, int>(threads).Run(
            [&]() -> std::optional<int> {
                most = std::max(most.load(), ++underWay);
                return next < kCount ? std::optional(next++) : std::nullopt;
            },
            [](int item) {
                std::this_thread::sleep_for(std::chrono::microseconds(item % 7 * 100));
                return item * item;
            },
            [&](int result) {
                EXPECT_EQ(result, delivered * delivered);
                ++delivered;
                --underWay;
                return true;
            },
            [](int) { ADD_FAILURE(); });
        EXPECT_EQ(delivered, kCount);
        EXPECT_LE(most, 3 * threads + 2);
    }
}

TEST(OrderedWork, EndsEarlyAndAccountsForEveryResult) {
    for (const int threads : {1, 3}) {
        int next = 0;
        std::atomic<int> worked{0};
        int delivered = 0;
        int discarded = 0;
        OrderedWork<int, int>(threads).Run([&] { return std::optional(next++); },
                                           [&](int item) {
                                               ++worked;
                                               return item;
                                           },
                                           [&](int) { return ++delivered < 10; },
                                           [&](int) { ++discarded; });
        EXPECT_EQ(delivered, 10);
        EXPECT_EQ(delivered + discarded, worked);
        EXPECT_EQ(worked, next);
    }
}

TEST(OrderedWork, PassesExceptionsOn) {
    const auto run = [](int takeFails, int workFails, int deliverFails) {
        int next = 0;
        const auto failAt = [](int item, int at) {
            return item == at ? throw std::bad_alloc() : item;
        };
        OrderedWork<int, int>(2).Run([&] { return std::optional(failAt(next++, takeFails)); },
                                     [&](int item) { return failAt(item, workFails); },
                                     [&](int item) { return failAt(item, deliverFails) < 50; },
                                     [](int) {});
    };
    EXPECT_NO_THROW(run(-1, -1, -1));
    EXPECT_THROW(run(5, -1, -1), std::bad_alloc);
    EXPECT_THROW(run(-1, 5, -1), std::bad_alloc);
    EXPECT_THROW(run(-1, -1, 5), std::bad_alloc);
}

}  // namespace
}  // namespace lumirra
