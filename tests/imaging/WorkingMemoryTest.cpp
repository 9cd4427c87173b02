#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstddef>
#include <memory>
#include <thread>

#include "imaging/WorkingMemory.h"

namespace lumirra {
namespace {

long PageFaultsOfThisThread() {
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_minflt;
}

TEST(WorkingMemory, AFreedBufferServesTheNextOne) {
    KeepWorkingMemory();
    constexpr std::size_t kMegabyte = 1 << 20;
    constexpr std::size_t kLargest = 15;
    const auto pageBytes = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    long faults = 0;
    std::thread([&] {
        const long before = PageFaultsOfThisThread();
        for (std::size_t size = 1; size <= kLargest; ++size) {
            const std::unique_ptr<volatile char[]> buffer(new char[size * kMegabyte]);
            for (std::size_t at = 0; at < size * kMegabyte; at += pageBytes) {
                buffer[at] = 1;
            }
        }
        faults = PageFaultsOfThisThread() - before;
    }).join();
    // As many as the largest needs, not eight times that for all of them.
    EXPECT_LT(faults, static_cast<long>(2 * kLargest * kMegabyte / pageBytes));
}

}  // namespace
}  // namespace lumirra
