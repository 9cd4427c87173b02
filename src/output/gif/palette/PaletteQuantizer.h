#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "output/animation/Canvas.h"

namespace lumirra::gif {

/// Those of `picture`'s opaque colours where `where` is not 0 (everywhere when it is empty), in
/// order of value, or nothing when there are more than `limit`.
std::optional<std::vector<Rgba>> FewColors(const Canvas& picture, std::size_t limit,
                                           const std::vector<std::uint8_t>& where = {});

/// Two such lists as one.
std::vector<Rgba> Union(const std::vector<Rgba>& a, const std::vector<Rgba>& b);
/// Whether all of `colors` are in `palette`, both in order of value.
bool Contains(const std::vector<Rgba>& palette, const std::vector<Rgba>& colors);

/// Pixels of nearly one colour: their sums, and the colour that most of them have, if one has.
struct ColorBin {
    double weight = 0;
    double r = 0;
    double g = 0;
    double b = 0;
    std::uint32_t majority = 0;
    double majorityLead = 0;
};

/// The colours of a picture, counted. `importance` holds one value a pixel, 0 for pixels that do
/// not matter, or is empty when all count alike.
std::vector<ColorBin> CountColors(const Canvas& picture,
                                  const std::vector<std::uint8_t>& importance);

/// At most `limit` colours that stand for these with little error. Colours that cover whole areas
/// are given exactly. Never empty.
std::vector<Rgba> QuantizePalette(const std::vector<ColorBin>& colors, std::size_t limit);

/// Squared yuv distance to the nearest entry, summed over all colours by their weights.
double PaletteError(const std::vector<ColorBin>& colors, const std::vector<Rgba>& palette);

}  // namespace lumirra::gif
