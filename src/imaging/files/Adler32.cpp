#include "imaging/files/Adler32.h"

#include <algorithm>
#include <cstddef>

namespace lumirra {
namespace {

constexpr std::uint64_t kModulus = 65521;
constexpr std::size_t kMostBytes = 4096;  // whose weighted sum fits 31 bits

}  // namespace

std::uint32_t Adler32(std::uint32_t before, std::span<const std::uint8_t> bytes) {
    std::uint64_t a = before & 0xFFFFU;
    std::uint64_t b = before >> 16;
    while (!bytes.empty()) {
        const auto count = static_cast<std::int16_t>(std::min(bytes.size(), kMostBytes));
        const std::uint8_t* const at = bytes.data();
        // A byte counts once for itself and for each after it. In a form made into vectors.
        std::int32_t sum = 0;
        std::int32_t weighted = 0;
        for (std::int16_t i = 0; i < count; ++i) {
            const std::int16_t byte = at[i];
            const auto weight = static_cast<std::int16_t>(count - i);
            sum += byte;
            weighted += byte * weight;
        }
        b = (b + static_cast<std::uint64_t>(count) * a + static_cast<std::uint64_t>(weighted)) %
            kModulus;
        a = (a + static_cast<std::uint64_t>(sum)) % kModulus;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return static_cast<std::uint32_t>(b << 16 | a);
}

}  // namespace lumirra
