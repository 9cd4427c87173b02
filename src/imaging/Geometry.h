#pragma once

namespace lumirra {

/// A size in pixels. Fractions are allowed; an operation that makes a picture says how it rounds.
struct ImageSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const ImageSize&, const ImageSize&) = default;
};

/// A rectangle in image coordinates: origin at the bottom-left corner of the picture, y upwards,
/// in pixels.
struct ImageRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    friend bool operator==(const ImageRect&, const ImageRect&) = default;
};

}  // namespace lumirra
