#include "jobs/WorkerThread.h"

#include <system_error>
#include <utility>

namespace lumirra {

void WorkerThread::Run(Task task) {
    if (finished_) {
        return;
    }
    if (!EnsureThread()) {
        task({});
        return;
    }
    {
        const std::scoped_lock lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    waiting_.notify_one();
}

void WorkerThread::Finish() {
    finished_ = true;
    if (thread_.joinable()) {
        thread_.request_stop();
        thread_.join();
    }
    tasks_.clear();
}

bool WorkerThread::EnsureThread() {
    if (!thread_.joinable()) {
        try {
            thread_ = std::jthread([this](const std::stop_token& stop) { Work(stop); });
        } catch (const std::system_error&) {
            return false;
        }
    }
    return true;
}

void WorkerThread::Work(const std::stop_token& stop) {
    while (true) {
        Task task;
        {
            std::unique_lock lock(mutex_);
            if (!waiting_.wait(lock, stop, [this] { return !tasks_.empty(); }) ||
                stop.stop_requested()) {
                return;
            }
            task = std::move(tasks_.front());
            tasks_.pop_front();
        }
        task(stop);
    }
}

}  // namespace lumirra
