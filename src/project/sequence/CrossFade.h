#pragma once

#include <QImage>
#include <vector>

namespace lumirra {

// The last frames fade into the first ones, which are left out at the start: a repetition goes on
// where the fade ends.

/// One frame of the fade, in place of frame `from`.
struct FadedFrame {
    int from = 0;      ///< index of one of the last frames
    int into = 0;      ///< index of one of the first
    double share = 0;  ///< of `into`, above 0 and below 1
    friend bool operator==(const FadedFrame&, const FadedFrame&) = default;
};

/// The fade of `length` of `count` frames; the animation is then frames `length` to `count` - 1
/// with the last `length` replaced. Empty when the two ends would meet: `count` is less than twice
/// `length`.
std::vector<FadedFrame> CrossFade(int count, int length);

/// `share` of `into` over the rest of `from`, alpha included. A null picture when the sizes differ
/// or memory is short. Any thread.
QImage Faded(const QImage& from, const QImage& into, double share);

}  // namespace lumirra
