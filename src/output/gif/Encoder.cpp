#include "output/gif/Encoder.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

#include "output/gif/Tuning.h"
#include "output/gif/file/GifFile.h"
#include "output/gif/palette/Palette.h"
#include "output/gif/search/StringSearch.h"
#include "output/gif/target/Goal.h"
#include "output/gif/target/Masking.h"

namespace lumirra::gif {

namespace {

constexpr std::size_t kMostColors = 255;

/// One image on its way through the stages.
struct Frame {
    Picture source;
    Picture goal;
    std::vector<std::uint8_t> moved;
    std::vector<std::uint8_t> lasts;
    std::optional<std::vector<Rgba>> exactColors;  ///< that an exact image has to draw with
    Disposal disposal = Disposal::Keep;
    bool blankScreen = false;

    std::vector<Rgba> palette;
    bool filePalette = false;
    std::vector<std::uint8_t> data;
    std::atomic<int> rowsDone = 0;
    bool finished = false;

    void Release() {
        rowsDone.store(std::numeric_limits<int>::max(), std::memory_order_release);
        rowsDone.notify_all();
    }
};

bool AnyTransparent(const Picture& picture) {
    return std::any_of(picture.pixels.begin(), picture.pixels.end(),
                       [](Rgba color) { return color.a == 0; });
}

/// Whether a pixel goes from drawn to transparent, which no image can do on top of another.
bool AnyVanishes(const Picture& from, const Picture& to) {
    for (std::size_t i = 0; i < from.Size(); ++i) {
        if (from.pixels[i].a != 0 && to.pixels[i].a == 0) {
            return true;
        }
    }
    return false;
}

/// Errors show on screens and drawings, where neither grain nor texture hides them, and little more
/// is needed to avoid them: a bit counts less there.
float FlatFactor(const Picture& goal) {
    constexpr float kNoneBelow = 0.5F;
    constexpr float kFullFrom = 0.8F;
    constexpr float kFull = 0.42F;
    const float share =
        std::clamp((FlatShare(goal) - kNoneBelow) / (kFullFrom - kNoneBelow), 0.0F, 1.0F);
    return 1 - (1 - kFull) * share;
}

class Run {
  public:
    Run(const EncoderOptions& options, const EncoderPorts& ports, const std::stop_token& stop)
        : options_(options),
          ports_(ports),
          stop_(stop),
          tuning_(TuningFor(options.quality)),
          goals_(tuning_.goal),
          threads_(options.threads > 0
                       ? options.threads
                       : std::max(1, static_cast<int>(std::thread::hardware_concurrency()))) {}

    EncodeSummary Go() {
        const std::stop_callback onStop(stop_, [this] { End(EncodeEnd::Stopped); });
        {
            std::vector<std::jthread> workers;
            workers.reserve(static_cast<std::size_t>(threads_));
            for (int i = 0; i < threads_; ++i) {
                workers.emplace_back([this] { Work(); });
            }
            WriteAll();
        }
        return {end_, written_};
    }

  private:
    enum class Job { Load, Prepare, Search, Leave };

    void End(EncodeEnd why) {
        const std::scoped_lock lock(mutex_);
        if (end_ == EncodeEnd::Done) {
            end_ = why;
        }
        ended_ = true;
        wake_.notify_all();
    }

    // Workers.

    void Work() {
        try {
            for (;;) {
                std::unique_lock lock(mutex_);
                std::optional<Job> job;
                wake_.wait(lock, [&] { return (job = NextJob()).has_value(); });
                switch (*job) {
                    case Job::Search:
                        SearchFrame(lock);
                        break;
                    case Job::Prepare:
                        PrepareFrame(lock);
                        break;
                    case Job::Load:
                        LoadEntry(lock);
                        break;
                    case Job::Leave:
                        return;
                }
                wake_.notify_all();
            }
        } catch (const std::bad_alloc&) {
            End(EncodeEnd::OutOfMemory);
        }
    }

    std::optional<Job> NextJob() const {
        if (ended_ || (Absorbed() && searching_ == frameCount_)) {
            return Job::Leave;
        }
        if (searching_ < prepared_) {
            return Job::Search;
        }
        const int lookAhead = tuning_.goal.lookAhead;
        constexpr int kPreparedAhead = 2;
        if (!preparing_ && prepared_ < frameCount_ && prepared_ - searching_ < kPreparedAhead &&
            (Absorbed() || frameCount_ > prepared_ + lookAhead)) {
            return Job::Prepare;
        }
        const int waiting = nextEntry_ - absorbed_ + frameCount_ - prepared_;
        if (nextEntry_ < options_.entries && waiting < lookAhead + 1 + threads_) {
            return Job::Load;
        }
        return std::nullopt;
    }

    bool Absorbed() const { return absorbed_ == options_.entries; }

    void LoadEntry(std::unique_lock<std::mutex>& lock) {
        const int entry = nextEntry_++;
        lock.unlock();
        std::optional<Picture> picture = ports_.load(entry);
        lock.lock();
        arrived_.emplace(entry, std::move(picture));
        for (auto at = arrived_.find(absorbed_); at != arrived_.end();
             at = arrived_.find(absorbed_)) {
            if (at->second) {
                auto frame = std::make_shared<Frame>();
                frame->source = std::move(*at->second);
                frames_.emplace(frameCount_++, std::move(frame));
            }
            arrived_.erase(at);
            ++absorbed_;
        }
    }

    void PrepareFrame(std::unique_lock<std::mutex>& lock) {
        preparing_ = true;
        const int number = prepared_;
        const std::shared_ptr<Frame> frame = frames_.at(number);
        std::vector<const Picture*> window;
        for (int ahead = 0; ahead <= tuning_.goal.lookAhead && number + ahead < frameCount_;
             ++ahead) {
            window.push_back(&frames_.at(number + ahead)->source);
        }
        const bool last = Absorbed() && number + 1 == frameCount_;
        lock.unlock();
        MakeGoal(*frame, window, number == 0, last);
        frame->source = {};
        lock.lock();
        preparing_ = false;
        ++prepared_;
    }

    void MakeGoal(Frame& frame, const std::vector<const Picture*>& window, bool first, bool last) {
        if (first) {
            startsTransparent_ = AnyTransparent(frame.source);
        }
        frame.blankScreen = first || lastDisposal_ == Disposal::Clear;
        const bool clears =
            last ? startsTransparent_ : window.size() > 1 && AnyVanishes(frame.source, *window[1]);
        frame.disposal = clears ? Disposal::Clear : Disposal::Keep;
        lastDisposal_ = frame.disposal;

        frame.exactColors = FewColors(frame.source, kMostColors);
        GoalMaker::Result result =
            frame.exactColors ? goals_.NextExact(frame.source) : goals_.Next(window);
        frame.goal = std::move(result.goal);
        frame.moved = std::move(result.moved);
        frame.lasts = std::move(result.lasts);
        if (frame.blankScreen) {
            std::fill(frame.moved.begin(), frame.moved.end(), std::uint8_t{1});
        } else if (frame.exactColors && lastExact_) {
            // The rest of the screen is right already.
            frame.exactColors = FewColors(frame.source, kMostColors, frame.moved);
        }
        lastExact_ = frame.exactColors.has_value();
        if (first) {
            if (frame.exactColors) {
                AddColorsAhead(window, *frame.exactColors);
            }
            MakePaletteFor(frame);
            filePalette_ = frame.palette;
            frame.filePalette = true;
            screen_.shown = Picture{options_.width, options_.height, {}};
            screen_.shown.pixels.resize(frame.goal.Size());
            screen_.drawnGoal = screen_.shown;
        }
    }

    /// Drawings go on in much the same colours, so one palette may do for many frames.
    static void AddColorsAhead(const std::vector<const Picture*>& window,
                               std::vector<Rgba>& colors) {
        for (std::size_t ahead = 1; ahead < window.size(); ++ahead) {
            const auto more = FewColors(*window[ahead], kMostColors);
            std::vector<Rgba> all = Union(colors, more.value_or(std::vector<Rgba>{}));
            if (!more || all.size() > kMostColors) {
                return;
            }
            colors = std::move(all);
        }
    }

    void MakePaletteFor(Frame& frame) const {
        if (frame.exactColors) {
            frame.palette = std::move(*frame.exactColors);
            frame.exactColors.emplace();
            if (frame.palette.empty()) {
                frame.palette.push_back({0, 0, 0, 255});
            }
            return;
        }
        constexpr std::uint8_t kMovedWeight = 128;
        std::vector<std::uint8_t> importance(frame.moved.size());
        for (std::size_t i = 0; i < importance.size(); ++i) {
            importance[i] = frame.moved[i] != 0 ? kMovedWeight : std::uint8_t{1};
        }
        const std::vector<ColorBin> colors = CountColors(frame.goal, importance);
        frame.palette = MakePalette(colors, kMostColors);
        // A palette of its own has to be worth the bits that it takes.
        constexpr double kPaletteBits = 8 * 3 * 256;
        if (!filePalette_.empty() &&
            PaletteError(colors, filePalette_) - PaletteError(colors, frame.palette) <
                kMovedWeight * tuning_.search.lambda * kPaletteBits) {
            frame.palette = filePalette_;
            frame.filePalette = true;
        }
    }

    void SearchFrame(std::unique_lock<std::mutex>& lock) {
        const int number = searching_++;
        const std::shared_ptr<Frame> frame = frames_.at(number);
        const std::shared_ptr<Frame> before = number > 0 ? beforeSearching_ : nullptr;
        beforeSearching_ = frame;
        lock.unlock();
        // Whatever happens, the next frame must not wait for this one for ever.
        const auto release = [](Frame* done) { done->Release(); };
        const std::unique_ptr<Frame, decltype(release)> guard(frame.get(), release);

        if (!frame->filePalette) {
            if (frame->exactColors && Contains(filePalette_, *frame->exactColors)) {
                frame->filePalette = true;
                frame->palette = filePalette_;
            } else {
                MakePaletteFor(*frame);
            }
        }
        SearchJob job;
        job.goal = &frame->goal;
        job.lasts = &frame->lasts;
        job.palette = &frame->palette;
        job.exact = frame->exactColors.has_value();
        job.blankScreen = frame->blankScreen;
        job.tuning = tuning_.search;
        job.tuning.lambda *= FlatFactor(frame->goal);
        job.waitForRows = [this, &before](int rows) { return WaitForRows(before.get(), rows); };
        job.rowsDone = [&frame](int rows) {
            frame->rowsDone.store(rows, std::memory_order_release);
            frame->rowsDone.notify_all();
        };
        SearchStrings(job, screen_, frame->data);
        frame->goal = {};
        frame->moved = {};
        frame->lasts = {};
        lock.lock();
        frame->finished = true;
    }

    bool WaitForRows(const Frame* before, int rows) const {
        if (before != nullptr) {
            for (int done = before->rowsDone.load(std::memory_order_acquire);
                 done < rows && !ended_; done = before->rowsDone.load(std::memory_order_acquire)) {
                before->rowsDone.wait(done, std::memory_order_acquire);
            }
        }
        return !ended_;
    }

    // The calling thread.

    void WriteAll() {
        while (std::shared_ptr<Frame> frame = NextFinished()) {
            if (!WriteFrame(*frame)) {
                End(EncodeEnd::WriteFailed);
                return;
            }
            ++written_;
            if (ports_.imageData) {
                ports_.imageData(frame->data.size());
            }
            ports_.progress(std::min(written_, options_.entries));
        }
        if (end_ == EncodeEnd::Done && written_ > 0 && !ports_.write({&kTrailer, 1})) {
            End(EncodeEnd::WriteFailed);
        }
    }

    /// Waits for the image to be written next; nothing at the end or after a stop.
    std::shared_ptr<Frame> NextFinished() {
        std::unique_lock lock(mutex_);
        wake_.wait(lock, [this] {
            if (ended_ || (Absorbed() && written_ == frameCount_)) {
                return true;
            }
            const auto at = frames_.find(written_);
            return at != frames_.end() && at->second->finished;
        });
        const auto at = frames_.find(written_);
        if (ended_ || at == frames_.end()) {
            return nullptr;
        }
        std::shared_ptr<Frame> frame = std::move(at->second);
        frames_.erase(at);
        return frame;
    }

    bool WriteFrame(const Frame& frame) const {
        if (written_ == 0) {
            // One entry more: the transparent colour's.
            std::vector<Rgba> palette = filePalette_;
            palette.push_back({});
            if (!ports_.write(
                    FileHeader(options_.width, options_.height, palette, options_.loops))) {
                return false;
            }
        }
        ImageBlock image;
        image.width = options_.width;
        image.height = options_.height;
        image.delayHundredths = options_.delayHundredths;
        image.disposal = frame.disposal;
        image.transparent = static_cast<std::uint8_t>(frame.palette.size());
        if (!frame.filePalette) {
            image.localPalette = frame.palette;
        }
        return ports_.write(ImageHeader(image)) && ports_.write(frame.data);
    }

    const EncoderOptions& options_;
    const EncoderPorts& ports_;
    std::stop_token stop_;
    EncoderTuning tuning_;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::atomic<bool> ended_ = false;
    EncodeEnd end_ = EncodeEnd::Done;

    int nextEntry_ = 0;
    int absorbed_ = 0;
    std::map<int, std::optional<Picture>> arrived_;
    int frameCount_ = 0;
    std::map<int, std::shared_ptr<Frame>> frames_;

    bool preparing_ = false;
    int prepared_ = 0;
    GoalMaker goals_;
    Disposal lastDisposal_ = Disposal::Keep;
    bool lastExact_ = false;
    bool startsTransparent_ = false;
    std::vector<Rgba> filePalette_;

    int searching_ = 0;
    std::shared_ptr<Frame> beforeSearching_;
    Screen screen_;
    int written_ = 0;
    int threads_;
};

}  // namespace

EncodeSummary Encode(const EncoderOptions& options, const EncoderPorts& ports,
                     const std::stop_token& stop) {
    return Run(options, ports, stop).Go();
}

}  // namespace lumirra::gif
