#include "jobs/BackgroundJob.h"

#include <system_error>
#include <utility>

namespace lumirra {
BackgroundJob::BackgroundJob(QObject* parent) : QObject(parent) {
    connect(this, &BackgroundJob::Said, this, &BackgroundJob::Deliver, Qt::QueuedConnection);
}

BackgroundJob::~BackgroundJob() {
    thread_.request_stop();
    if (thread_.joinable()) {
        thread_.join();
    }
}

bool BackgroundJob::Start(Kind kind, Work work, std::function<void()> finished) {
    try {
        thread_ = std::jthread([this, work = std::move(work)](const std::stop_token& stop) {
            work(stop);
            Post([this] { Finish(); });
        });
    } catch (const std::system_error&) {
        return false;
    }
    kind_ = kind;
    finished_ = std::move(finished);
    Q_EMIT RunningChanged();
    return true;
}

void BackgroundJob::Stop() {
    if (kind_ == Kind::None) {
        return;
    }
    thread_.request_stop();
    if (thread_.joinable()) {
        thread_.join();
    }
    Deliver();
}

void BackgroundJob::Cancel() {
    thread_.request_stop();
}

void BackgroundJob::Post(std::function<void()> message) {
    {
        const std::scoped_lock lock(mutex_);
        messages_.push_back(std::move(message));
    }
    Q_EMIT Said();
}

/// One at a time: a message may open a dialog, and while that is open the next ones arrive.
void BackgroundJob::Deliver() {
    while (true) {
        std::function<void()> message;
        {
            const std::scoped_lock lock(mutex_);
            if (messages_.empty()) {
                return;
            }
            message = std::move(messages_.front());
            messages_.pop_front();
        }
        message();
    }
}

void BackgroundJob::Finish() {
    if (thread_.joinable()) {
        thread_.join();
    }
    kind_ = Kind::None;
    const auto finished = std::exchange(finished_, nullptr);
    Q_EMIT RunningChanged();
    finished();
}

}  // namespace lumirra
