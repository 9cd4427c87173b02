#pragma once

#include <optional>
#include <vector>

#include "imaging/Outcome.h"

namespace lumirra {

// The order and the times in which the frames of a list are shown. Pure, any thread. A frame that
// is shown twice stands in the sequence twice.

constexpr int kLongestHundredths = 65535;  ///< that a frame can be shown

/// One frame as it is shown.
struct ShownFrame {
    int frame = 0;             ///< its index in the list
    std::optional<int> delay;  ///< hundredths of a second; absent: the setting's
    friend bool operator==(const ShownFrame&, const ShownFrame&) = default;
};
using FrameSequence = std::vector<ShownFrame>;

/// The nearest delay to that many seconds that a file can hold.
int HundredthsOf(double seconds);

FrameSequence Reversed(FrameSequence sequence);

/// Followed by itself backwards, without its first and last frame, so that neither is shown twice
/// in a row when it repeats.
FrameSequence ForthAndBack(FrameSequence sequence);

/// The first frame and every `step`-th after it, with the delays they have. `step` at least 1.
FrameSequence EveryNth(const FrameSequence& sequence, int step);

/// Only the frames of these indices into the sequence, ascending; each is shown as long as it and
/// those left out after it were together. The first must be 0. `commonDelay`: the setting's, in
/// hundredths.
FrameSequence KeepingTime(const FrameSequence& sequence, const std::vector<int>& kept,
                          int commonDelay);

/// All delays divided by `factor`, rounded so that every running sum is right within half a
/// hundredth. Fails when a frame would be shown for less than 0.01 s or more than 655.35 s.
Outcome<FrameSequence> AtSpeed(FrameSequence sequence, double factor, int commonDelay);

}  // namespace lumirra
