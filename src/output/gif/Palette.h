#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "output/gif/Picture.h"

namespace lumirra::gif {

/// The opaque colours of a picture in order of value, or nothing when there are more than `limit`.
std::optional<std::vector<Rgba>> FewColors(const Picture& picture, std::size_t limit);

/// At most `limit` colours that stand for the picture with little error. `importance` holds one
/// value a pixel, 0 for pixels that do not matter, or is empty when all count alike. Colours that
/// cover whole areas are given exactly. Never empty.
std::vector<Rgba> MakePalette(const Picture& picture, const std::vector<std::uint8_t>& importance,
                              std::size_t limit);

}  // namespace lumirra::gif
