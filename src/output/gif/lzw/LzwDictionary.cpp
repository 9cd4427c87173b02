#include "output/gif/lzw/LzwDictionary.h"

#include <algorithm>

namespace lumirra::gif {

namespace {

constexpr float kFarAway = 1e9F;

}  // namespace

void LzwDictionary::Configure(const std::vector<Yuv>& palette, int transparentIndex, int codeBits) {
    palette_ = palette;
    palette_.resize(256, Yuv{kFarAway, kFarAway, kFarAway});
    transparentIndex_ = transparentIndex;
    codeBits_ = codeBits;
    blocks_.reserve(kMaxCodes + 32);
    const auto colors = static_cast<unsigned>(palette.size());
    nodes_[kRoot] = Node{};
    blocks_.clear();
    for (unsigned color = 0; color < colors; ++color) {
        if (static_cast<int>(color) != transparentIndex_) {
            Append(nodes_[kRoot], color, color);
        }
    }
    nodes_[kRoot].transparentChild = transparentIndex_ >= 0
                                         ? static_cast<std::uint16_t>(transparentIndex_)
                                         : std::uint16_t{kNone};
    Clear();
}

void LzwDictionary::Clear() {
    const std::size_t rootBlocks = nodes_[kRoot].lastBlock == kNone
                                       ? 0
                                       : static_cast<std::size_t>(nodes_[kRoot].lastBlock) + 1;
    blocks_.resize(rootBlocks);
    for (unsigned code = 0; code < ClearCode(); ++code) {
        nodes_[code] = Node{};
        nodes_[code].length = 1;
        nodes_[code].color = static_cast<std::uint8_t>(code);
    }
    nodes_[kRoot].height = 1;
}

unsigned LzwDictionary::Find(unsigned parent, unsigned color) const {
    const Node& node = nodes_[parent];
    if (static_cast<int>(color) == transparentIndex_) {
        return node.transparentChild;
    }
    for (unsigned index = node.firstBlock; index != kNone; index = blocks_[index].next) {
        const Block& block = blocks_[index];
        for (std::size_t lane = 0; lane < block.used; ++lane) {
            if (nodes_[block.code[lane]].color == color) {
                return block.code[lane];
            }
        }
    }
    return kNone;
}

void LzwDictionary::Add(unsigned parent, unsigned color, unsigned code) {
    Node& node = nodes_[code];
    node = Node{};
    node.parent = static_cast<std::uint16_t>(parent);
    node.color = static_cast<std::uint8_t>(color);
    node.length = static_cast<std::uint16_t>(nodes_[parent].length + 1);
    if (static_cast<int>(color) == transparentIndex_) {
        nodes_[parent].transparentChild = static_cast<std::uint16_t>(code);
    } else {
        Append(nodes_[parent], color, code);
    }
    std::uint16_t height = 1;
    for (unsigned up = parent; nodes_[up].height < height; up = nodes_[up].parent) {
        nodes_[up].height = height++;
        if (up == kRoot) {
            break;
        }
    }
}

void LzwDictionary::RemoveNewest(unsigned parent, unsigned code) {
    Node& node = nodes_[parent];
    if (node.transparentChild == code) {
        node.transparentChild = kNone;
        return;
    }
    Block& block = blocks_[node.lastBlock];
    --block.used;
    block.y[block.used] = kFarAway;
}

void LzwDictionary::Append(Node& parent, unsigned color, unsigned code) {
    if (parent.lastBlock == kNone || blocks_[parent.lastBlock].used == kBlockLanes) {
        const auto index = static_cast<std::uint16_t>(blocks_.size());
        Block& block = blocks_.emplace_back();
        block.y.fill(kFarAway);
        block.u.fill(kFarAway);
        block.v.fill(kFarAway);
        block.code.fill(kNone);
        block.next = kNone;
        block.used = 0;
        if (parent.lastBlock == kNone) {
            parent.firstBlock = index;
        } else {
            blocks_[parent.lastBlock].next = index;
        }
        parent.lastBlock = index;
    }
    Block& block = blocks_[parent.lastBlock];
    const Yuv& yuv = palette_[color];
    block.y[block.used] = yuv.y;
    block.u[block.used] = yuv.u;
    block.v[block.used] = yuv.v;
    block.code[block.used] = static_cast<std::uint16_t>(code);
    ++block.used;
}

}  // namespace lumirra::gif
