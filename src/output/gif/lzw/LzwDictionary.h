#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "output/gif/Yuv.h"

namespace lumirra::gif {

/// The strings an LZW reader knows at one moment, as a tree laid out for the search: the colours of
/// a node's children stand side by side, eight to a block, so that all are compared at once.
class LzwDictionary {
  public:
    static constexpr unsigned kMaxCodes = 4096;
    static constexpr unsigned kNone = 0xFFFF;
    /// The empty string; its children are the single pixels.
    static constexpr unsigned kRoot = kMaxCodes;
    static constexpr std::size_t kBlockLanes = 8;

    struct alignas(64) Block {
        std::array<float, kBlockLanes> y;
        std::array<float, kBlockLanes> u;
        std::array<float, kBlockLanes> v;
        std::array<std::uint16_t, kBlockLanes> code;
        std::uint16_t next;
        std::uint16_t used;
    };

    struct Node {
        std::uint16_t firstBlock = kNone;
        std::uint16_t lastBlock = kNone;
        std::uint16_t transparentChild = kNone;
        std::uint16_t parent = kRoot;
        std::uint16_t height = 0;  ///< longest way down from here
        std::uint16_t length = 0;  ///< pixels of the string
        std::uint8_t color = 0;    ///< of the last pixel
    };

    /// `transparentIndex` is the transparent colour or -1; it has no yuv. `codeBits` is the width
    /// of a single pixel.
    void Configure(const std::vector<Yuv>& palette, int transparentIndex, int codeBits);
    /// Back to single pixels.
    void Clear();

    unsigned ClearCode() const { return 1U << static_cast<unsigned>(codeBits_); }
    unsigned EndCode() const { return ClearCode() + 1; }
    int CodeBits() const { return codeBits_; }

    const Node& At(unsigned code) const { return nodes_[code]; }
    const Block& BlockAt(unsigned index) const { return blocks_[index]; }
    const Yuv& PaletteYuv(unsigned color) const { return palette_[color]; }
    int TransparentIndex() const { return transparentIndex_; }

    /// The child of that colour, or kNone.
    unsigned Find(unsigned parent, unsigned color) const;
    /// A new child; the parent must have none of that colour.
    void Add(unsigned parent, unsigned color, unsigned code);
    /// Takes back the child that was added last of all.
    void RemoveNewest(unsigned parent, unsigned code);

  private:
    void Append(Node& parent, unsigned color, unsigned code);

    std::vector<Yuv> palette_;
    std::array<Node, kMaxCodes + 1> nodes_;
    std::vector<Block> blocks_;
    int transparentIndex_ = -1;
    int codeBits_ = 8;
};

}  // namespace lumirra::gif
