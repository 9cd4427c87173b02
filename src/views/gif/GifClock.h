#pragma once

#include <QtGlobal>

namespace lumirra {

/// Says when the next picture of a playing animation is due. Each due time follows from the one
/// before it, so that late timers do not add up to a drift. Times are nanoseconds of a steady
/// clock.
class GifClock {
  public:
    static constexpr qint64 kNanosecondsPerMillisecond = 1'000'000;
    /// After a longer delay the pictures missed are not caught up.
    static constexpr qint64 kMostLate = 500 * kNanosecondsPerMillisecond;

    /// The first picture is shown at `now` and stays for `milliseconds`.
    void Start(qint64 now, int milliseconds) {
        due_ = now + milliseconds * kNanosecondsPerMillisecond;
    }
    bool IsDue(qint64 now) const { return now >= due_; }
    /// The picture that was due is shown at `now` and stays for `milliseconds`.
    void Advance(qint64 now, int milliseconds) {
        if (now - due_ > kMostLate) {
            due_ = now;
        }
        due_ += milliseconds * kNanosecondsPerMillisecond;
    }
    /// Milliseconds until the next picture is due, rounded up; 0 when it is.
    int Wait(qint64 now) const {
        const qint64 wait = due_ - now + kNanosecondsPerMillisecond - 1;
        return static_cast<int>(wait > 0 ? wait / kNanosecondsPerMillisecond : 0);
    }

  private:
    qint64 due_ = 0;
};

}  // namespace lumirra
