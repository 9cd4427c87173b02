#pragma once

#include <vector>

namespace lumirra {

/// Rows that stand for a picture of that height: bands spread over it, about an eighth of all, in
/// order. At least one.
std::vector<int> SampleRows(int height);

/// Bytes of the data of whole pictures, from those of their sampled rows.
struct RowSample {
    bool whole = true;            ///< the samples are all rows
    double unchangedSample = 0;   ///< bytes of a sample in which nothing changes
    double unchangedPicture = 0;  ///< the same of a whole picture
    int pictures = 0;
    double content = 0;  ///< bytes of the samples beyond those that nothing changed would take

    void Add(double sampleBytes);
    /// When whole pictures hold `complexityRatio` times what the samples hold.
    double WholeBytes(double complexityRatio) const;
};

}  // namespace lumirra
