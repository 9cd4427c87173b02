#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "output/animation/Canvas.h"

namespace lumirra {

/// Complexity estimate of whole frames and of their sampled rows: a rough count of changed and
/// textured pixels, which grows as the bytes of an encoding do. The ratio tells how well the sample
/// stands for the whole. Any thread; frames may come in any order.
class ComplexityMeter {
  public:
    /// `rows` must outlive the meter.
    explicit ComplexityMeter(const std::vector<int>& rows) : rows_(rows) {}

    /// Each entry once, numbered from 0; null for one that is left out.
    void Add(int entry, const std::shared_ptr<const Canvas>& frame);

    /// Complexity of all rows over that of the sampled rows; after the last `Add`.
    double Ratio() const;

  private:
    using Shared = std::shared_ptr<const Canvas>;

    /// A frame is kept until it was compared with both neighbours.
    struct Waiting {
        Shared frame;
        int meetings = 0;
    };

    Shared Meet(std::map<int, Waiting>::iterator neighbour, std::map<int, Waiting>::iterator own);
    void Measure(const Canvas* before, const Canvas& frame);

    const std::vector<int>& rows_;
    std::mutex mutex_;
    std::map<int, Waiting> waiting_;
    std::uint64_t wholePixels_ = 0;
    std::uint64_t sampledPixels_ = 0;
    std::uint64_t whole_ = 0;
    std::uint64_t sampled_ = 0;
};

}  // namespace lumirra
