#pragma once

#include <array>
#include <cstddef>

namespace lumirra::gif {

constexpr std::size_t kMaxColors = 256;

/// A palette's colours, each component side by side; beyond `count` out of reach.
struct ColorPlanes {
    alignas(64) std::array<float, kMaxColors> y{};
    alignas(64) std::array<float, kMaxColors> u{};
    alignas(64) std::array<float, kMaxColors> v{};
    std::size_t count = 0;
};

}  // namespace lumirra::gif
