#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace lumirra {

inline constexpr int kLiteralSymbols = 286;  ///< of deflate: bytes, end of block, lengths
inline constexpr int kLongestCode = 14;      ///< bits, so that a pixel's four codes fit one word

struct HuffmanCode {
    std::array<std::uint16_t, kLiteralSymbols> code{};   ///< lowest bit first, as deflate sends it
    std::array<std::uint8_t, kLiteralSymbols> length{};  ///< 0: the symbol does not occur
};

/// A prefix code for symbols that occur that often, no code longer than `kLongestCode`. At least
/// one count must not be 0.
HuffmanCode MakeHuffmanCode(const std::array<std::uint32_t, kLiteralSymbols>& counts);

}  // namespace lumirra
