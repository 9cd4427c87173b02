#pragma once

#include <QObject>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace lumirra {

/// Runs one long job at a time on a thread of its own and delivers its messages on the main thread.
/// Call from the main thread, except where an operation says otherwise.
class BackgroundJob : public QObject {
    Q_OBJECT

  public:
    enum class Kind { None, Extraction, Editing, Generation };
    using Work = std::function<void(const std::stop_token& stop)>;

    explicit BackgroundJob(QObject* parent = nullptr);
    /// Stops the work and waits for it; messages not yet delivered are dropped.
    ~BackgroundJob() override;

    /// `None` when no job runs.
    Kind Running() const { return kind_; }

    /// Precondition: no job runs. False when the system gives no thread. `finished` is called after
    /// the work has returned and all its messages are delivered; the job has ended by then, so that
    /// `finished` may start the next.
    [[nodiscard]] bool Start(Kind kind, Work work, std::function<void()> finished);

    /// Asks the work to stop, waits until it returns, delivers its messages and calls `finished`,
    /// all before returning. Nothing happens when no job runs.
    void Stop();

    /// Asks the work to stop; it ends as it always does, a little later.
    void Cancel();

    /// For `work`: `message` is called on the main thread, messages in their order.
    void Post(std::function<void()> message);

  Q_SIGNALS:
    void RunningChanged();
    /// From the work: a message waits.
    void Said();

  private:
    void Deliver();
    void Finish();

    Kind kind_ = Kind::None;
    std::function<void()> finished_;
    std::mutex mutex_;
    std::deque<std::function<void()>> messages_;
    std::jthread thread_;
};

}  // namespace lumirra
