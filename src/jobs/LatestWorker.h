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
    /// On the worker: gives what is to be done with the answer, on the main thread. `stop` is set
    /// when nobody wants the answer any more.
    using Deliver = std::function<void()>;
    using Work = std::function<Deliver(const std::stop_token& stop)>;

    /// What becomes of the answer that is being worked on when a newer request comes.
    enum class Older { Dropped, Delivered };

    explicit LatestWorker(QObject* parent = nullptr);
    /// Waits for the work; nothing is delivered any more.
    ~LatestWorker() override;

    void Submit(Work work, Older older = Older::Dropped);
    /// Nothing that was asked for so far is wanted any more.
    void Forget();

    /// Something is being worked on, wanted or not.
    bool IsBusy() const { return busy_; }
    /// A newer request will be answered in place of the running one.
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
