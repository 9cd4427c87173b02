#include "app/jobs/BackgroundJob.h"

#include <memory>
#include <utility>

namespace lumirra {
namespace {

/// What the waiting work and the main thread share of a question.
struct Question {
    std::mutex mutex;
    std::condition_variable_any answered;
    std::optional<bool> answer;
    bool abandoned = false;
};

}  // namespace

BackgroundJob::BackgroundJob(QObject* parent) : QObject(parent) {
    connect(this, &BackgroundJob::Said, this, &BackgroundJob::Deliver, Qt::QueuedConnection);
}

BackgroundJob::~BackgroundJob() {
    thread_.request_stop();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void BackgroundJob::Start(Kind kind, Work work, std::function<void()> finished) {
    kind_ = kind;
    finished_ = std::move(finished);
    thread_ = std::jthread([this, work = std::move(work)](const std::stop_token& stop) {
        work(stop);
        Post([this] { Finish(); });
    });
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
    std::exchange(finished_, nullptr)();
}

std::optional<bool> BackgroundJob::Ask(std::function<bool()> question,
                                       const std::stop_token& stop) {
    const auto shared = std::make_shared<Question>();
    Post([shared, question = std::move(question)] {
        {
            const std::scoped_lock lock(shared->mutex);
            if (shared->abandoned) {
                return;
            }
        }
        const bool answer = question();
        const std::scoped_lock lock(shared->mutex);
        shared->answer = answer;
        shared->answered.notify_all();
    });
    std::unique_lock lock(shared->mutex);
    if (!shared->answered.wait(lock, stop, [&] { return shared->answer.has_value(); })) {
        shared->abandoned = true;
    }
    return shared->answer;
}

}  // namespace lumirra
