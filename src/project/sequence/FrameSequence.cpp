#include "project/sequence/FrameSequence.h"

#include <algorithm>
#include <cmath>

namespace lumirra {

int HundredthsOf(double seconds) {
    return static_cast<int>(
        std::clamp(std::round(seconds * 100), 1.0, static_cast<double>(kLongestHundredths)));
}

FrameSequence Reversed(FrameSequence sequence) {
    std::reverse(sequence.begin(), sequence.end());
    return sequence;
}

FrameSequence ForthAndBack(FrameSequence sequence) {
    for (std::size_t i = sequence.size(); i-- > 2;) {
        const ShownFrame back = sequence[i - 1];
        sequence.push_back(back);
    }
    return sequence;
}

FrameSequence EveryNth(const FrameSequence& sequence, int step) {
    FrameSequence kept;
    for (std::size_t i = 0; i < sequence.size(); i += static_cast<std::size_t>(step)) {
        kept.push_back(sequence[i]);
    }
    return kept;
}

FrameSequence KeepingTime(const FrameSequence& sequence, const std::vector<int>& kept,
                          int commonDelay) {
    FrameSequence result;
    for (std::size_t k = 0; k < kept.size(); ++k) {
        const auto first = static_cast<std::size_t>(kept[k]);
        const auto end =
            k + 1 < kept.size() ? static_cast<std::size_t>(kept[k + 1]) : sequence.size();
        ShownFrame frame = sequence[first];
        if (end > first + 1) {
            long long sum = 0;
            for (std::size_t i = first; i < end; ++i) {
                sum += sequence[i].delay.value_or(commonDelay);
            }
            frame.delay = static_cast<int>(std::min<long long>(sum, kLongestHundredths));
        }
        result.push_back(frame);
    }
    return result;
}

Outcome<FrameSequence> AtSpeed(FrameSequence sequence, double factor, int commonDelay) {
    double before = 0;
    long long after = 0;
    for (ShownFrame& frame : sequence) {
        before += frame.delay.value_or(commonDelay);
        const long long delay = std::llround(before / factor) - after;
        if (delay < 1 || delay > kLongestHundredths) {
            return Failure{Failure::Kind::Invalid,
                           delay < 1 ? QStringLiteral("At that speed a frame would be shown for "
                                                      "less than 0.01 s; leave frames out.")
                                     : QStringLiteral("At that speed a frame would be shown for "
                                                      "more than 655.35 s."),
                           {}};
        }
        frame.delay = static_cast<int>(delay);
        after += delay;
    }
    return sequence;
}

}  // namespace lumirra
