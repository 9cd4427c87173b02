#pragma once

#include <cstdint>
#include <span>

namespace lumirra {

/// The checksum of a zlib stream (RFC 1950) over `bytes` that follow those of `before`, which is 1
/// at the start. A few times faster than the library's.
std::uint32_t Adler32(std::uint32_t before, std::span<const std::uint8_t> bytes);

}  // namespace lumirra
