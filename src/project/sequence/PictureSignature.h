#pragma once

#include <QImage>
#include <cstdint>
#include <vector>

namespace lumirra {

/// What a picture looks like in the small, for comparing many: the mean colours of 16 x 16 fields,
/// in 64ths of a level. Empty for a null picture.
using PictureSignature = std::vector<std::int16_t>;

/// Over black where the picture is transparent. Any thread.
PictureSignature SignatureOf(const QImage& picture);

/// The mean difference in levels, 0..255; 255 when either is empty.
double DifferenceOf(const PictureSignature& a, const PictureSignature& b);

/// The indices of the pictures that differ from the one kept before them by more than `threshold`
/// levels; the first is kept.
std::vector<int> WithoutNearDuplicates(const std::vector<PictureSignature>& pictures,
                                       double threshold);

}  // namespace lumirra
