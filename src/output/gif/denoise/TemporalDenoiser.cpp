#include "output/gif/denoise/TemporalDenoiser.h"

namespace lumirra::gif {

namespace {

/// The mean of one pixel over the first `count` canvases.
Rgba MeanPixel(const std::vector<const Canvas*>& canvases, unsigned count, std::size_t at) {
    const Rgba& own = canvases.front()->pixels[at];
    if (count <= 1) {
        return own;
    }
    unsigned r = 0;
    unsigned g = 0;
    unsigned b = 0;
    for (unsigned i = 0; i < count; ++i) {
        const Rgba& color = canvases[i]->pixels[at];
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

TemporalDenoiser::Result TemporalDenoiser::Next(const std::vector<const Canvas*>& window) {
    const Canvas& frame = *window.front();
    const std::size_t size = frame.Size();
    std::vector<std::uint8_t> lifetimes(size, 1);
    std::vector<std::uint8_t> open(size, 1);
    std::vector<std::uint8_t> unchanged;
    for (std::size_t ahead = 1;
         ahead < window.size() && ahead <= static_cast<std::size_t>(tuning_.lookAhead); ++ahead) {
        UnchangedMask(frame, *window[ahead], tuning_, unchanged);
        for (std::size_t i = 0; i < size; ++i) {
            open[i] &= unchanged[i];
            lifetimes[i] = static_cast<std::uint8_t>(lifetimes[i] + open[i]);
        }
    }
    if (last_.Size() == size) {
        UnchangedMask(frame, last_, tuning_, unchanged);
    } else {
        unchanged.assign(size, 0);
        last_ = frame;
    }
    for (std::size_t i = 0; i < size; ++i) {
        if (unchanged[i] == 0) {
            last_.pixels[i] = MeanPixel(window, lifetimes[i], i);
        }
        unchanged[i] ^= 1U;
    }
    return {last_, std::move(unchanged), std::move(lifetimes)};
}

TemporalDenoiser::Result TemporalDenoiser::NextExact(const Canvas& frame) {
    std::vector<std::uint8_t> changed(frame.Size(), 1);
    if (last_.Size() == frame.Size()) {
        for (std::size_t i = 0; i < changed.size(); ++i) {
            changed[i] = last_.pixels[i] == frame.pixels[i] ? 0 : 1;
        }
    }
    last_ = frame;
    return {frame, std::move(changed), std::vector<std::uint8_t>(frame.Size(), 1)};
}

}  // namespace lumirra::gif
