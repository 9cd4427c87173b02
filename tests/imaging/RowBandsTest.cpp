#include <gtest/gtest.h>

#include <atomic>

#include "imaging/RowBands.h"

namespace lumirra {
namespace {

TEST(RowBands, EveryRowOnceForAnyNumberOfThreads) {
    for (const int rows : {0, 1, 15, 16, 31, 33, 100, 1081}) {
        for (const int threads : {-1, 0, 1, 2, 3, 7, 64}) {
            std::vector<std::atomic<int>> visits(static_cast<std::size_t>(rows));
            std::atomic<int> bands = 0;
            ForEachRowBand(rows, threads, [&](int first, int end) {
                ++bands;
                for (int row = first; row < end; ++row) {
                    ++visits[static_cast<std::size_t>(row)];
                }
            });
            for (const auto& count : visits) {
                ASSERT_EQ(count, 1) << rows << " rows, " << threads << " threads";
            }
            EXPECT_LE(bands, std::max(threads, 1));
        }
    }
}

}  // namespace
}  // namespace lumirra
