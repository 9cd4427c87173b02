#include "output/size/ComplexityMeter.h"

#include <algorithm>
#include <cstdlib>

namespace lumirra {

namespace {

constexpr int kPerChangedPixel = 1;
constexpr int kPerBitOfTexture = 16;
/// Even where nothing happens a little is drawn.
constexpr double kPerPixel = 0.1;
/// The whole is measured on one row of so many.
constexpr int kRowStep = 3;
/// Differences that film grain does not make.
constexpr int kChange = 6;

/// Bits of a number from 0 to 255, without a branch or a table: many at a time.
int BitsOf(int value) {
    return (value > 0 ? 1 : 0) + (value > 1 ? 1 : 0) + (value > 3 ? 1 : 0) + (value > 7 ? 1 : 0) +
           (value > 15 ? 1 : 0) + (value > 31 ? 1 : 0) + (value > 63 ? 1 : 0) +
           (value > 127 ? 1 : 0);
}

/// Pixels by the texture they lie in: steps from the left neighbour in bits. With a frame before,
/// changed pixels only.
std::uint64_t ContentOfRow(const Rgba* before, const Rgba* row, int width) {
    int content = 0;  // at most 65535 * 129
    if (before == nullptr) {
        for (int x = 1; x < width; ++x) {
            const int step = std::abs(row[x].g - row[x - 1].g);
            content += kPerChangedPixel + kPerBitOfTexture * BitsOf(step);
        }
        return static_cast<std::uint64_t>(content);
    }
    for (int x = 1; x < width; ++x) {
        const int step = std::abs(row[x].g - row[x - 1].g);
        const int change = std::abs(before[x].g - row[x].g) + std::abs(before[x].r - row[x].r) +
                           std::abs(before[x].a - row[x].a);
        content += change > kChange ? kPerChangedPixel + kPerBitOfTexture * BitsOf(step) : 0;
    }
    return static_cast<std::uint64_t>(content);
}

}  // namespace

void ComplexityMeter::Add(int entry, const Shared& frame) {
    Shared before;
    Shared after;
    {
        const std::scoped_lock lock(mutex_);
        const auto own = waiting_.emplace(entry, Waiting{frame, entry == 0 ? 1 : 0}).first;
        before = Meet(waiting_.find(entry - 1), own);
        after = Meet(waiting_.find(entry + 1), own);
        if (own->second.meetings == 2) {
            waiting_.erase(own);
        }
    }
    if (frame && (before || entry == 0)) {
        Measure(before.get(), *frame);
    }
    if (after) {
        Measure(frame.get(), *after);
    }
}

ComplexityMeter::Shared ComplexityMeter::Meet(std::map<int, Waiting>::iterator neighbour,
                                              std::map<int, Waiting>::iterator own) {
    if (neighbour == waiting_.end()) {
        return nullptr;
    }
    ++own->second.meetings;
    Shared frame = neighbour->second.frame;
    if (++neighbour->second.meetings == 2) {
        waiting_.erase(neighbour);
    }
    return frame;
}

void ComplexityMeter::Measure(const Canvas* before, const Canvas& frame) {
    const auto contentOf = [&](int y) {
        return ContentOfRow(before == nullptr ? nullptr : before->Row(y), frame.Row(y),
                            frame.width);
    };
    std::uint64_t whole = 0;
    std::uint64_t rows = 0;
    for (int y = kRowStep / 2; y < frame.height; y += kRowStep, ++rows) {
        whole += contentOf(y);
    }
    whole = whole * static_cast<std::uint64_t>(frame.height) / std::max<std::uint64_t>(rows, 1);
    std::uint64_t sampled = 0;
    for (const int y : rows_) {
        sampled += contentOf(y);
    }
    const std::scoped_lock lock(mutex_);
    whole_ += whole;
    sampled_ += sampled;
    wholePixels_ += frame.Size();
    sampledPixels_ += rows_.size() * static_cast<std::size_t>(frame.width);
}

double ComplexityMeter::Ratio() const {
    const double whole =
        static_cast<double>(whole_) + kPerPixel * static_cast<double>(wholePixels_);
    const double sampled =
        static_cast<double>(sampled_) + kPerPixel * static_cast<double>(sampledPixels_);
    return sampled > 0 ? whole / sampled : 1;
}

}  // namespace lumirra
