#pragma once

#include <QtGlobal>

namespace lumirra {

/// When the next picture of an animation is due. Each time is counted from the one before it, not
/// from when that was shown, so that late timers do not add up. Nanoseconds of any steady clock.
class GifClock {
  public:
    static constexpr qint64 kNanosecondsPerMillisecond = 1'000'000;
    /// Who is later than this does not catch up but goes on from where it is.
    static constexpr qint64 kMostLate = 500 * kNanosecondsPerMillisecond;

    /// A picture that is to stay for `milliseconds` is shown now.
    void Start(qint64 now, int milliseconds) {
        due_ = now + milliseconds * kNanosecondsPerMillisecond;
    }
    bool IsDue(qint64 now) const { return now >= due_; }
    /// The picture that was due is shown.
    void Advance(qint64 now, int milliseconds) {
        if (now - due_ > kMostLate) {
            due_ = now;
        }
        due_ += milliseconds * kNanosecondsPerMillisecond;
    }
    /// Whole milliseconds, rounded up, that a timer has to wait.
    int Wait(qint64 now) const {
        const qint64 wait = due_ - now + kNanosecondsPerMillisecond - 1;
        return static_cast<int>(wait > 0 ? wait / kNanosecondsPerMillisecond : 0);
    }

  private:
    qint64 due_ = 0;
};

}  // namespace lumirra
