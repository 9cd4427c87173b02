#include "project/sequence/PictureSignature.h"

#include <array>
#include <cstdlib>

namespace lumirra {
namespace {

constexpr int kFields = 16;  // across and down
constexpr int kChannels = 3;
constexpr int kParts = 64;  // of a level
constexpr double kWhite = 255;

/// The rows or columns of field `i`; at least one, also of a picture smaller than the fields.
std::pair<int, int> FieldSpan(int i, int length) {
    const int first = std::min(i * length / kFields, length - 1);
    return {first, std::max((i + 1) * length / kFields, first + 1)};
}

}  // namespace

PictureSignature SignatureOf(const QImage& picture) {
    if (picture.isNull()) {
        return {};
    }
    const QImage image = picture.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    if (image.isNull()) {
        return {};
    }
    PictureSignature signature;
    signature.reserve(static_cast<std::size_t>(kFields * kFields * kChannels));
    for (int fieldY = 0; fieldY < kFields; ++fieldY) {
        const auto [top, bottom] = FieldSpan(fieldY, image.height());
        for (int fieldX = 0; fieldX < kFields; ++fieldX) {
            const auto [left, right] = FieldSpan(fieldX, image.width());
            std::array<std::uint64_t, kChannels> sums{};
            for (int y = top; y < bottom; ++y) {
                const uchar* pixel = image.constScanLine(y) + qsizetype{4} * left;
                for (int x = left; x < right; ++x, pixel += 4) {
                    for (std::size_t c = 0; c < sums.size(); ++c) {
                        sums[c] += pixel[c];
                    }
                }
            }
            const auto pixels =
                static_cast<std::uint64_t>(right - left) * static_cast<std::uint64_t>(bottom - top);
            for (const std::uint64_t sum : sums) {
                signature.push_back(static_cast<std::int16_t>(sum * kParts / pixels));
            }
        }
    }
    return signature;
}

double DifferenceOf(const PictureSignature& a, const PictureSignature& b) {
    if (a.empty() || a.size() != b.size()) {
        return kWhite;
    }
    int sum = 0;  // 768 differences of at most 16320
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += std::abs(a[i] - b[i]);
    }
    return sum / (static_cast<double>(a.size()) * kParts);
}

std::vector<int> WithoutNearDuplicates(const std::vector<PictureSignature>& pictures,
                                       double threshold) {
    std::vector<int> kept;
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        if (kept.empty() || DifferenceOf(pictures[static_cast<std::size_t>(kept.back())],
                                         pictures[i]) > threshold) {
            kept.push_back(static_cast<int>(i));
        }
    }
    return kept;
}

}  // namespace lumirra
