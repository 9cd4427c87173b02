#pragma once

#include <atomic>
#include <condition_variable>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "output/animation/AnimationEncoder.h"
#include "output/gif/FrameStages.h"

namespace lumirra::gif {

/// Takes the frames of one file through the stages on several threads, with few of them in memory,
/// and writes them in order on the calling thread. Frames overlap row by row. Used once.
class FrameScheduler {
  public:
    /// All three must outlive the run.
    FrameScheduler(const AnimationOptions& options, const AnimationPorts& ports,
                   const std::stop_token& stop);

    /// What a callback throws, other than for lack of memory, comes through when all is still.
    EncodeSummary Run();

  private:
    enum class Job { Load, Prepare, Encode, Leave };
    using Lock = std::unique_lock<std::mutex>;

    struct Entry {
        GifFrame frame;
        bool finished = false;
    };

    void End(EncodeEnd why);
    template <typename Part>
    void EndingOnFailure(const Part& part);
    void RunAll();
    void StartWorkers(std::vector<std::jthread>& workers);

    // Workers, or the calling thread when there are none.
    void Work();
    void Do(Job job, Lock& lock);
    std::optional<Job> NextJob() const;
    bool Absorbed() const { return absorbed_ == options_.entries; }
    void LoadEntry(Lock& lock);
    void PrepareFrame(Lock& lock);
    void EncodeFrame(Lock& lock);
    bool WaitForRows(const Entry* before, int rows) const;

    // The calling thread.
    void WriteAll(bool alone);
    std::shared_ptr<Entry> NextFinished(bool alone);
    bool WriteFrame(const GifFrame& frame) const;

    const AnimationOptions& options_;
    const AnimationPorts& ports_;
    std::stop_token stop_;
    FrameStages stages_;
    int threads_;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::atomic<bool> ended_ = false;
    EncodeEnd end_ = EncodeEnd::Complete;
    std::exception_ptr error_;

    int nextEntry_ = 0;
    int absorbed_ = 0;
    std::map<int, std::optional<TimedCanvas>> arrived_;
    int frameCount_ = 0;
    std::map<int, std::shared_ptr<Entry>> frames_;
    bool preparing_ = false;
    int prepared_ = 0;
    int encoding_ = 0;
    std::shared_ptr<Entry> beforeEncoding_;
    int written_ = 0;
};

}  // namespace lumirra::gif
