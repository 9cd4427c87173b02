#pragma once

#include <optional>
#include <stop_token>
#include <vector>

#include "project/sequence/PictureSignature.h"

namespace lumirra {

/// A part of the pictures that can be repeated: the picture of index `end` looks like that of
/// `first`, and so do their neighbours, so that `first` can follow the last one of the part.
struct Loop {
    int first = 0;
    int end = 0;            ///< the first picture after the part
    double difference = 0;  ///< between the two and their neighbours, in levels
    friend bool operator==(const Loop&, const Loop&) = default;
};

/// The part of at least `least` pictures whose ends match best; of parts that match about as well
/// the shortest, as a film that repeats matches after two periods as after one. Nothing when there
/// are no more pictures than `least`, or when stopped. Any thread; the time grows with the square
/// of the pictures.
std::optional<Loop> FindLoop(const std::vector<PictureSignature>& pictures, int least,
                             const std::stop_token& stop);

}  // namespace lumirra
