#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace lumirra {

/// Does tasks one after the other on a thread of its own, which is started with the first of them.
/// Where no thread can be had they are done by the caller. Used from one thread.
class WorkerThread {
  public:
    using Task = std::function<void(const std::stop_token& stop)>;

    WorkerThread() = default;
    WorkerThread(const WorkerThread&) = delete;
    WorkerThread& operator=(const WorkerThread&) = delete;
    /// Asks the running task to stop, waits for it, and drops those that have not begun.
    ~WorkerThread() { Finish(); }

    void Run(Task task);
    /// As the destructor does; nothing is done afterwards.
    void Finish();

  private:
    bool EnsureThread();
    void Work(const std::stop_token& stop);

    std::mutex mutex_;
    std::condition_variable_any waiting_;
    std::deque<Task> tasks_;
    bool finished_ = false;
    std::jthread thread_;
};

}  // namespace lumirra
