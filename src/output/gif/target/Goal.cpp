#include "output/gif/target/Goal.h"

namespace lumirra::gif {

namespace {

/// The mean of one pixel over the first `count` pictures.
Rgba MeanPixel(const std::vector<const Picture*>& pictures, unsigned count, std::size_t at) {
    const Rgba& own = pictures.front()->pixels[at];
    if (count <= 1) {
        return own;
    }
    unsigned r = 0;
    unsigned g = 0;
    unsigned b = 0;
    for (unsigned i = 0; i < count; ++i) {
        const Rgba& color = pictures[i]->pixels[at];
        r += color.r;
        g += color.g;
        b += color.b;
    }
    const auto rounded = [count](unsigned sum) {
        return static_cast<std::uint8_t>((sum + count / 2) / count);
    };
    return {rounded(r), rounded(g), rounded(b), own.a};
}

}  // namespace

GoalMaker::Result GoalMaker::Next(const std::vector<const Picture*>& window) {
    const Picture& frame = *window.front();
    const std::size_t size = frame.Size();
    std::vector<std::uint8_t> lasts(size, 1);
    std::vector<std::uint8_t> open(size, 1);
    std::vector<std::uint8_t> still;
    for (std::size_t ahead = 1;
         ahead < window.size() && ahead <= static_cast<std::size_t>(tuning_.lookAhead); ++ahead) {
        StillMask(frame, *window[ahead], tuning_, still);
        for (std::size_t i = 0; i < size; ++i) {
            open[i] &= still[i];
            lasts[i] = static_cast<std::uint8_t>(lasts[i] + open[i]);
        }
    }
    if (last_.Size() == size) {
        StillMask(frame, last_, tuning_, still);
    } else {
        still.assign(size, 0);
        last_ = frame;
    }
    for (std::size_t i = 0; i < size; ++i) {
        if (still[i] == 0) {
            last_.pixels[i] = MeanPixel(window, lasts[i], i);
        }
        still[i] ^= 1U;
    }
    return {last_, std::move(still), std::move(lasts)};
}

GoalMaker::Result GoalMaker::NextExact(const Picture& frame) {
    std::vector<std::uint8_t> moved(frame.Size(), 1);
    if (last_.Size() == frame.Size()) {
        for (std::size_t i = 0; i < moved.size(); ++i) {
            moved[i] = last_.pixels[i] == frame.pixels[i] ? 0 : 1;
        }
    }
    last_ = frame;
    return {frame, std::move(moved), std::vector<std::uint8_t>(frame.Size(), 1)};
}

}  // namespace lumirra::gif
