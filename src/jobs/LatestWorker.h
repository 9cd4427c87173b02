#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

#include "jobs/WorkerThread.h"

namespace lumirra {

/// Answers the latest of many requests in the background: while one is being worked on, at most one
/// more waits, the newest. Main thread.
class LatestWorker : public QObject {
    Q_OBJECT

  public:
    /// Runs on the worker thread and returns a function that delivers its answer on the main
    /// thread. `stop` is requested when the answer is no longer wanted.
    using Deliver = std::function<void()>;
    using Work = std::function<Deliver(const std::stop_token& stop)>;

    /// What happens to the answer of the running request when a newer one is submitted.
    enum class Older { Dropped, Delivered };

    explicit LatestWorker(QObject* parent = nullptr);
    /// Waits for the running request; its answer is dropped.
    ~LatestWorker() override;

    void Submit(Work work, Older older = Older::Dropped);
    /// Cancels the running and the waiting request.
    void Forget();

    /// A request is running, cancelled or not.
    bool IsBusy() const { return busy_; }
    /// The running request was replaced by a newer one that waits.
    bool IsReplaced() const { return busy_ && dropped_ && next_; }

  Q_SIGNALS:
    void BusyChanged();
    /// From the worker: its answer.
    void Answered(const std::function<void()>& deliver);

  private:
    void Start(Work work);
    void Finish(const Deliver& deliver);
    void SetBusy(bool busy);

    std::optional<Work> next_;
    std::stop_source stop_;  ///< of the running work
    bool busy_ = false;
    bool dropped_ = false;
    WorkerThread thread_;
};

}  // namespace lumirra
