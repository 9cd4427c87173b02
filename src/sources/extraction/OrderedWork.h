#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace lumirra {

/// Single use. Works on a sequence of items with several threads and delivers the results in the
/// sequence's order. Each thread takes the next item when its turn comes and then works on it
/// beside the others, so there is never more than one item in each thread and a few results
/// waiting.
template <typename Item, typename Result>
class OrderedWork {
  public:
    explicit OrderedWork(int threads) : threads_(std::clamp(threads, 1, kMaxThreads)) {}

    /// `take()` gives the next item or nothing; one thread at a time, in order.
    /// `work(item)` gives its result; on several threads at once.
    /// `deliver(result)` on the calling thread, in order; false ends the work.
    /// `discard(result)` on the calling thread for what was worked on and is not delivered.
    /// The first exception of `take` or `work` ends the work and is thrown on when all threads have
    /// ended; one of `deliver` likewise.
    template <typename Take, typename Work, typename Deliver, typename Discard>
    void Run(const Take& take, const Work& work, const Deliver& deliver, const Discard& discard) {
        std::vector<std::jthread> workers;
        try {
            Start(workers, [&] { WorkOn(take, work); });
            if (workers.empty()) {
                RunAlone(take, work, deliver);
            }
            while (std::optional<Result> result = WaitForNext()) {
                if (!deliver(*std::move(result))) {
                    break;
                }
            }
        } catch (...) {
            End(std::current_exception());
        }
        End(nullptr);
        workers.clear();
        for (auto& [place, result] : finished_) {
            discard(std::move(result));
        }
        if (error_) {
            std::rethrow_exception(error_);
        }
    }

  private:
    /// As many as the system lets us have.
    template <typename Body>
    void Start(std::vector<std::jthread>& workers, const Body& body) {
        while (workers.size() < static_cast<std::size_t>(threads_)) {
            try {
                workers.emplace_back(body);
            } catch (const std::system_error&) {
                return;
            }
        }
    }

    template <typename Take, typename Work, typename Deliver>
    void RunAlone(const Take& take, const Work& work, const Deliver& deliver) {
        for (std::optional<Item> item = take(); item; item = take()) {
            if (!deliver(work(*std::move(item)))) {
                break;
            }
        }
        End(nullptr);
    }

    template <typename Take, typename Work>
    void WorkOn(const Take& take, const Work& work) {
        try {
            while (true) {
                std::unique_lock turn(turn_);
                if (!WaitForRoom()) {
                    return;
                }
                std::optional<Item> item = take();
                const std::optional<std::int64_t> place = NextPlace(item.has_value());
                if (!place) {
                    return;
                }
                turn.unlock();
                Finish(*place, work(*std::move(item)));
            }
        } catch (...) {
            End(std::current_exception());
        }
    }

    /// False when there is nothing more to take.
    bool WaitForRoom() {
        std::unique_lock lock(mutex_);
        room_.wait(lock, [&] { return ended_ || taken_ - delivered_ < kLead * threads_; });
        return !ended_;
    }

    /// The place of the item just taken. Nothing when there was none, which is the sequence's end.
    std::optional<std::int64_t> NextPlace(bool taken) {
        const std::lock_guard lock(mutex_);
        if (!taken) {
            ended_ = true;
            room_.notify_all();
            ready_.notify_all();
            return std::nullopt;
        }
        return taken_++;
    }

    void Finish(std::int64_t place, Result result) {
        const std::lock_guard lock(mutex_);
        finished_.emplace(place, std::move(result));
        ready_.notify_all();
    }

    /// The next result in order; nothing when all are delivered or the work broke off.
    std::optional<Result> WaitForNext() {
        std::unique_lock lock(mutex_);
        ready_.wait(lock, [&] {
            return error_ || finished_.contains(delivered_) || (ended_ && delivered_ == taken_);
        });
        const auto next = finished_.find(delivered_);
        if (error_ || next == finished_.end()) {
            return std::nullopt;
        }
        Result result = std::move(next->second);
        finished_.erase(next);
        ++delivered_;
        room_.notify_all();
        return result;
    }

    void End(std::exception_ptr error) {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        if (!error_) {
            error_ = std::move(error);
        }
        room_.notify_all();
        ready_.notify_all();
    }

    static constexpr int kMaxThreads = 64;
    /// Items under way for each thread: enough that a slow one does not hold up the others.
    static constexpr int kLead = 3;

    const int threads_;
    std::mutex turn_;  ///< held while an item is taken; before mutex_
    std::mutex mutex_;
    std::condition_variable room_;
    std::condition_variable ready_;
    std::map<std::int64_t, Result> finished_;  ///< by place, not yet delivered
    std::int64_t taken_ = 0;
    std::int64_t delivered_ = 0;
    bool ended_ = false;  ///< nothing more is taken
    std::exception_ptr error_;
};

}  // namespace lumirra
