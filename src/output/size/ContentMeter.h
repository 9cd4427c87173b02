#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "output/gif/Picture.h"

namespace lumirra {

/// How much there is to draw in whole frames and in their sampled rows: a rough measure of bytes,
/// cheap enough to be taken of every pixel, that tells how well the sample stands for the whole.
/// Any thread; the order in which frames come does not matter.
class ContentMeter {
  public:
    /// `rows` must outlive the meter.
    explicit ContentMeter(const std::vector<int>& rows) : rows_(rows) {}

    /// Each entry once, from number 0 on; nothing for one that is left out.
    void Add(int entry, const std::shared_ptr<const gif::Picture>& frame);

    /// Content of all rows over that of the sampled ones. Once all frames have come.
    double Ratio() const;

  private:
    using Shared = std::shared_ptr<const gif::Picture>;

    /// A frame is needed until it has met both of its neighbours.
    struct Waiting {
        Shared frame;
        int meetings = 0;
    };

    Shared Meet(std::map<int, Waiting>::iterator neighbour, std::map<int, Waiting>::iterator own);
    void Measure(const gif::Picture* before, const gif::Picture& frame);

    const std::vector<int>& rows_;
    std::mutex mutex_;
    std::map<int, Waiting> waiting_;
    std::uint64_t wholePixels_ = 0;
    std::uint64_t sampledPixels_ = 0;
    std::uint64_t whole_ = 0;
    std::uint64_t sampled_ = 0;
};

}  // namespace lumirra
