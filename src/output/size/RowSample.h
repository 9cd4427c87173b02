#pragma once

#include <vector>

namespace lumirra {

/// Rows that stand for a picture of that height: bands spread over it, about an eighth of all, in
/// order. At least one.
std::vector<int> SampleRows(int height);

/// Bytes of the image data of whole pictures, from those of their sampled rows.
struct ImageSample {
    long long samplePixels = 0;  ///< of each image
    long long pixels = 0;
    int images = 0;
    double content = 0;  ///< bytes of the samples beyond those of images of one colour

    void Add(double sampleBytes);
    /// When whole pictures hold `contentRatio` times what the samples hold.
    double WholeBytes(double contentRatio) const;
};

}  // namespace lumirra
