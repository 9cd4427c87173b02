#include "project/sequence/LoopFinder.h"

#include <algorithm>

namespace lumirra {
namespace {

/// How much worse than the best one a match may be to count as being about as good: the noise that
/// an encoder leaves.
constexpr double kNearlyAsGood = 2;
constexpr double kRoundingLevels = 1.0 / 64;

/// The mean over a picture and its neighbours: a swing that passes the same place on its way back
/// looks alike in one picture only.
double WithNeighbours(const std::vector<double>& differences, std::size_t i) {
    const std::size_t first = i == 0 ? 0 : i - 1;
    const std::size_t end = std::min(i + 2, differences.size());
    double sum = 0;
    for (std::size_t k = first; k < end; ++k) {
        sum += differences[k];
    }
    return sum / static_cast<double>(end - first);
}

Loop BestOfLength(const std::vector<PictureSignature>& pictures, std::size_t length) {
    std::vector<double> differences;
    for (std::size_t i = 0; i + length < pictures.size(); ++i) {
        differences.push_back(DifferenceOf(pictures[i], pictures[i + length]));
    }
    Loop best{.difference = 256};
    for (std::size_t i = 0; i < differences.size(); ++i) {
        const double difference = WithNeighbours(differences, i);
        if (difference < best.difference) {
            best = {static_cast<int>(i), static_cast<int>(i + length), difference};
        }
    }
    return best;
}

}  // namespace

std::optional<Loop> FindLoop(const std::vector<PictureSignature>& pictures, int least,
                             const std::stop_token& stop) {
    std::vector<Loop> byLength;
    for (auto length = static_cast<std::size_t>(std::max(least, 1)); length < pictures.size();
         ++length) {
        if (stop.stop_requested()) {
            return std::nullopt;
        }
        byLength.push_back(BestOfLength(pictures, length));
    }
    if (byLength.empty()) {
        return std::nullopt;
    }
    const auto less = [](const Loop& a, const Loop& b) { return a.difference < b.difference; };
    const double best = std::min_element(byLength.begin(), byLength.end(), less)->difference;
    auto found = std::find_if(byLength.begin(), byLength.end(), [&](const Loop& loop) {
        return loop.difference <= best * kNearlyAsGood + kRoundingLevels;
    });
    // Down to the bottom of that dip: the lengths beside it are about as good in a slow film.
    while (found + 1 != byLength.end() && (found + 1)->difference < found->difference) {
        ++found;
    }
    return *found;
}

}  // namespace lumirra
