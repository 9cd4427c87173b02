#include "jobs/LatestWorker.h"

#include <new>
#include <utility>

namespace lumirra {

LatestWorker::LatestWorker(QObject* parent) : QObject(parent) {
    connect(this, &LatestWorker::Answered, this, &LatestWorker::Finish, Qt::QueuedConnection);
}

LatestWorker::~LatestWorker() {
    stop_.request_stop();
    thread_.Finish();
}

void LatestWorker::Submit(Work work, Older older) {
    if (!busy_) {
        Start(std::move(work));
        return;
    }
    next_ = std::move(work);
    if (older == Older::Dropped) {
        dropped_ = true;
        stop_.request_stop();
    }
}

void LatestWorker::Forget() {
    next_.reset();
    dropped_ = busy_;
    stop_.request_stop();
}

void LatestWorker::Start(Work work) {
    stop_ = std::stop_source();
    dropped_ = false;
    SetBusy(true);
    thread_.Run([this, work = std::move(work), stop = stop_.get_token()](const std::stop_token&) {
        Deliver deliver;
        try {
            deliver = work(stop);
        } catch (const std::bad_alloc&) {
            // There is no answer then.
        }
        Q_EMIT Answered(deliver);
    });
}

void LatestWorker::Finish(const Deliver& deliver) {
    const bool wanted = !std::exchange(dropped_, false);
    std::optional<Work> next = std::exchange(next_, std::nullopt);
    SetBusy(false);
    if (wanted && deliver) {
        deliver();
    }
    // What was delivered may have asked for more itself.
    if (next && !busy_) {
        Start(*std::move(next));
    }
}

void LatestWorker::SetBusy(bool busy) {
    if (std::exchange(busy_, busy) != busy) {
        Q_EMIT BusyChanged();
    }
}

}  // namespace lumirra
