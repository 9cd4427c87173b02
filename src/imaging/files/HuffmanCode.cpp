#include "imaging/files/HuffmanCode.h"

#include <algorithm>
#include <vector>

namespace lumirra {
namespace {

struct Node {
    std::uint64_t weight = 0;
    int left = -1;
    int right = -1;
};

/// Depth of each used symbol in the Huffman tree. Leaves come in rising weight; the inner nodes
/// arise in rising weight too, so two queues replace a heap.
std::vector<int> TreeDepths(const std::vector<std::uint64_t>& rising) {
    const auto leaves = static_cast<int>(rising.size());
    std::vector<Node> nodes;
    nodes.reserve(rising.size() * 2);
    for (const std::uint64_t weight : rising) {
        nodes.push_back({weight});
    }
    int leaf = 0;
    int inner = leaves;
    const auto takeLightest = [&] {
        const bool fromLeaves =
            leaf < leaves && (inner >= static_cast<int>(nodes.size()) ||
                              nodes[static_cast<std::size_t>(leaf)].weight <=
                                  nodes[static_cast<std::size_t>(inner)].weight);
        return fromLeaves ? leaf++ : inner++;
    };
    for (int joins = leaves - 1; joins > 0; --joins) {
        const int a = takeLightest();
        const int b = takeLightest();
        nodes.push_back(
            {nodes[static_cast<std::size_t>(a)].weight + nodes[static_cast<std::size_t>(b)].weight,
             a, b});
    }
    std::vector<int> depth(nodes.size(), 0);
    for (std::size_t i = nodes.size(); i-- > static_cast<std::size_t>(leaves);) {
        depth[static_cast<std::size_t>(nodes[i].left)] = depth[i] + 1;
        depth[static_cast<std::size_t>(nodes[i].right)] = depth[i] + 1;
    }
    depth.resize(rising.size());
    return depth;
}

std::uint16_t Reversed(std::uint32_t code, int length) {
    std::uint32_t reversed = 0;
    for (int bit = 0; bit < length; ++bit) {
        reversed = reversed << 1 | (code >> bit & 1U);
    }
    return static_cast<std::uint16_t>(reversed);
}

/// Codes of one length count up, shorter ones come first.
void AssignCodes(HuffmanCode& code) {
    std::uint32_t next = 0;
    for (int length = 1; length <= kLongestCode; ++length) {
        next <<= 1;
        for (std::size_t symbol = 0; symbol < code.length.size(); ++symbol) {
            if (code.length[symbol] == length) {
                code.code[symbol] = Reversed(next++, length);
            }
        }
    }
}

}  // namespace

HuffmanCode MakeHuffmanCode(const std::array<std::uint32_t, kLiteralSymbols>& counts) {
    std::vector<std::size_t> symbols;
    for (std::size_t symbol = 0; symbol < counts.size(); ++symbol) {
        if (counts[symbol] != 0) {
            symbols.push_back(symbol);
        }
    }
    std::stable_sort(symbols.begin(), symbols.end(),
                     [&](std::size_t a, std::size_t b) { return counts[a] < counts[b]; });
    std::vector<std::uint64_t> weights;
    weights.reserve(symbols.size());
    for (const std::size_t symbol : symbols) {
        weights.push_back(counts[symbol]);
    }

    std::vector<int> depths = TreeDepths(weights);
    // Flatter weights make a flatter tree; all equal they need nine bits.
    while (*std::max_element(depths.begin(), depths.end()) > kLongestCode) {
        for (std::uint64_t& weight : weights) {
            weight = weight / 2 + 1;
        }
        depths = TreeDepths(weights);
    }
    HuffmanCode code;
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        code.length[symbols[i]] = static_cast<std::uint8_t>(std::max(1, depths[i]));
    }
    AssignCodes(code);
    return code;
}

}  // namespace lumirra
