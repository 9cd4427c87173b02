#pragma once

#include <algorithm>
#include <cstdint>
#include <system_error>
#include <thread>
#include <vector>

namespace lumirra {

/// Calls fn(first, end) for bands that together cover the rows 0..rows-1 once, on up to `threads`
/// cores: the caller's thread takes the first band, one thread is started for each other band and
/// ended before the call returns. `fn` must not throw, and what it writes for a row must not depend
/// on where the bands begin. Few rows make fewer bands, for a thread costs more than they do.
template <typename Fn>
void ForEachRowBand(int rows, int threads, const Fn& fn) {
    constexpr int kFewestRows = 16;
    const int bands = std::clamp(threads, 1, std::max(1, rows / kFewestRows));
    const auto bandStart = [rows, bands](int band) {
        return static_cast<int>(std::int64_t{rows} * band / bands);
    };
    std::vector<std::jthread> others;
    others.reserve(static_cast<std::size_t>(bands - 1));
    for (int band = 1; band < bands; ++band) {
        const int first = bandStart(band);
        const int end = bandStart(band + 1);
        try {
            others.emplace_back([&fn, first, end] { fn(first, end); });
        } catch (const std::system_error&) {  // the system has no thread left: do it here
            fn(first, end);
        }
    }
    if (rows > 0) {
        fn(0, bandStart(1));
    }
}

}  // namespace lumirra
