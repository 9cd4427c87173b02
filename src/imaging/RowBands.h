#pragma once

#include <algorithm>
#include <cstdint>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace lumirra {

/// Calls fn(first, end) for bands that together cover the rows 0..rows-1 once, on up to `threads`
/// cores: the caller's thread takes the first band, one thread is started for each other band and
/// ended before the call returns; a band whose thread cannot be had is the caller's too. What `fn`
/// writes for a row must not depend on where the bands begin. An exception of `fn` is thrown on
/// when all bands have ended. Few rows make fewer bands, for a thread costs more than they do.
template <typename Fn>
void ForEachRowBand(int rows, int threads, const Fn& fn) {
    constexpr int kFewestRows = 16;
    if (rows <= 0) {
        return;
    }
    const int bands = std::clamp(threads, 1, std::max(1, rows / kFewestRows));
    std::vector<std::exception_ptr> problems(static_cast<std::size_t>(bands));
    const auto run = [&](int band) {
        try {
            fn(static_cast<int>(std::int64_t{rows} * band / bands),
               static_cast<int>(std::int64_t{rows} * (band + 1) / bands));
        } catch (...) {
            problems[static_cast<std::size_t>(band)] = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> others;
        others.reserve(static_cast<std::size_t>(bands - 1));
        int band = 1;
        try {
            for (; band < bands; ++band) {
                others.emplace_back(run, band);
            }
        } catch (const std::system_error&) {  // the system has no thread left
            for (; band < bands; ++band) {
                run(band);
            }
        }
        run(0);
    }
    for (const std::exception_ptr& problem : problems) {
        if (problem) {
            std::rethrow_exception(problem);
        }
    }
}

}  // namespace lumirra
