#include "output/gif/FrameScheduler.h"

#include <algorithm>
#include <new>
#include <system_error>

namespace lumirra::gif {

FrameScheduler::FrameScheduler(const AnimationOptions& options, const AnimationPorts& ports,
                               const std::stop_token& stop)
    : options_(options),
      ports_(ports),
      stop_(stop),
      stages_(options),
      threads_(options.threads > 0
                   ? options.threads
                   : std::max(1, static_cast<int>(std::thread::hardware_concurrency()))) {}

EncodeSummary FrameScheduler::Run() {
    RunAll();
    // From here on neither a worker nor a stop changes how it ended.
    if (error_) {
        std::rethrow_exception(error_);
    }
    return {end_, written_};
}

void FrameScheduler::End(EncodeEnd why) {
    const std::scoped_lock lock(mutex_);
    if (end_ == EncodeEnd::Complete) {
        end_ = why;
    }
    ended_ = true;
    wake_.notify_all();
}

/// Workers must not wait for a thread that is gone: whatever breaks off ends the run.
template <typename Part>
void FrameScheduler::EndingOnFailure(const Part& part) {
    try {
        part();
    } catch (const std::bad_alloc&) {
        End(EncodeEnd::OutOfMemory);
    } catch (...) {
        {
            const std::scoped_lock lock(mutex_);
            error_ = error_ ? error_ : std::current_exception();
        }
        End(EncodeEnd::Stopped);
    }
}

void FrameScheduler::RunAll() {
    const std::stop_callback onStop(stop_, [this] { End(EncodeEnd::Stopped); });
    std::vector<std::jthread> workers;
    EndingOnFailure([&] {
        StartWorkers(workers);
        WriteAll(workers.empty());
    });
}

/// As many as the system lets us have.
void FrameScheduler::StartWorkers(std::vector<std::jthread>& workers) {
    workers.reserve(static_cast<std::size_t>(threads_));
    try {
        while (std::ssize(workers) < threads_) {
            workers.emplace_back([this] { EndingOnFailure([this] { Work(); }); });
        }
    } catch (const std::system_error&) {
        return;
    }
}

void FrameScheduler::Work() {
    for (Lock lock(mutex_);;) {
        std::optional<Job> job;
        wake_.wait(lock, [&] { return (job = NextJob()).has_value(); });
        if (*job == Job::Leave) {
            return;
        }
        Do(*job, lock);
    }
}

void FrameScheduler::Do(Job job, Lock& lock) {
    switch (job) {
        case Job::Encode:
            EncodeFrame(lock);
            break;
        case Job::Prepare:
            PrepareFrame(lock);
            break;
        case Job::Load:
            LoadEntry(lock);
            break;
        case Job::Leave:
            break;
    }
    wake_.notify_all();
}

/// The latest stage first, so that frames leave memory before others come.
std::optional<FrameScheduler::Job> FrameScheduler::NextJob() const {
    if (ended_ || (Absorbed() && encoding_ == frameCount_)) {
        return Job::Leave;
    }
    if (encoding_ < prepared_) {
        return Job::Encode;
    }
    const int lookAhead = stages_.LookAhead();
    constexpr int kPreparedAhead = 2;
    if (!preparing_ && prepared_ < frameCount_ && prepared_ - encoding_ < kPreparedAhead &&
        (Absorbed() || frameCount_ > prepared_ + lookAhead)) {
        return Job::Prepare;
    }
    const int waiting = nextEntry_ - absorbed_ + frameCount_ - prepared_;
    if (nextEntry_ < options_.entries && waiting < lookAhead + 1 + threads_) {
        return Job::Load;
    }
    return std::nullopt;
}

void FrameScheduler::LoadEntry(Lock& lock) {
    const int number = nextEntry_++;
    lock.unlock();
    std::optional<TimedCanvas> loaded = ports_.load(number);
    lock.lock();
    arrived_.emplace(number, std::move(loaded));
    for (auto at = arrived_.find(absorbed_); at != arrived_.end(); at = arrived_.find(absorbed_)) {
        if (at->second) {
            auto entry = std::make_shared<Entry>();
            entry->frame.source = std::move(at->second->canvas);
            entry->frame.delay = at->second->delay;
            frames_.emplace(frameCount_++, std::move(entry));
        }
        arrived_.erase(at);
        ++absorbed_;
    }
}

void FrameScheduler::PrepareFrame(Lock& lock) {
    preparing_ = true;
    const int number = prepared_;
    const std::shared_ptr<Entry> entry = frames_.at(number);
    std::vector<const Canvas*> window;
    for (int ahead = 0; ahead <= stages_.LookAhead() && number + ahead < frameCount_; ++ahead) {
        window.push_back(&frames_.at(number + ahead)->frame.source);
    }
    const bool last = Absorbed() && number + 1 == frameCount_;
    lock.unlock();
    stages_.Prepare(entry->frame, window, number == 0, last);
    lock.lock();
    preparing_ = false;
    ++prepared_;
}

void FrameScheduler::EncodeFrame(Lock& lock) {
    const int number = encoding_++;
    const std::shared_ptr<Entry> entry = frames_.at(number);
    const std::shared_ptr<Entry> before = number > 0 ? beforeEncoding_ : nullptr;
    beforeEncoding_ = entry;
    lock.unlock();
    // Whatever happens, the next frame must not wait for this one for ever.
    const auto release = [](GifFrame* done) { done->Release(); };
    const std::unique_ptr<GifFrame, decltype(release)> guard(&entry->frame, release);
    stages_.Encode(entry->frame,
                   [this, &before](int rows) { return WaitForRows(before.get(), rows); });
    lock.lock();
    entry->finished = true;
}

bool FrameScheduler::WaitForRows(const Entry* before, int rows) const {
    if (before != nullptr) {
        const std::atomic<int>& rowsDone = before->frame.rowsDone;
        for (int done = rowsDone.load(std::memory_order_acquire); done < rows && !ended_;
             done = rowsDone.load(std::memory_order_acquire)) {
            rowsDone.wait(done, std::memory_order_acquire);
        }
    }
    return !ended_;
}

void FrameScheduler::WriteAll(bool alone) {
    while (const std::shared_ptr<Entry> entry = NextFinished(alone)) {
        if (!WriteFrame(entry->frame)) {
            End(EncodeEnd::WriteFailed);
            return;
        }
        ++written_;
        if (ports_.pictureData) {
            ports_.pictureData(entry->frame.data.size());
        }
        ports_.progress(std::min(written_, options_.entries));
    }
    if (!ended_ && written_ > 0 && !ports_.write({&kTrailer, 1})) {
        End(EncodeEnd::WriteFailed);
    }
}

/// Waits for the image to be written next, or makes it when there is no worker; nothing at the end
/// or after a stop.
std::shared_ptr<FrameScheduler::Entry> FrameScheduler::NextFinished(bool alone) {
    Lock lock(mutex_);
    const auto settled = [this] {
        if (ended_ || (Absorbed() && written_ == frameCount_)) {
            return true;
        }
        const auto at = frames_.find(written_);
        return at != frames_.end() && at->second->finished;
    };
    while (alone && !settled()) {
        Do(NextJob().value(), lock);
    }
    wake_.wait(lock, settled);
    const auto at = frames_.find(written_);
    if (ended_ || at == frames_.end()) {
        return nullptr;
    }
    std::shared_ptr<Entry> entry = std::move(at->second);
    frames_.erase(at);
    return entry;
}

bool FrameScheduler::WriteFrame(const GifFrame& frame) const {
    return (written_ > 0 || ports_.write(stages_.FileStart())) &&
           ports_.write(stages_.ImageStart(frame)) && ports_.write(frame.data);
}

}  // namespace lumirra::gif
