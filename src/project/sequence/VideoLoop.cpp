#include "project/sequence/VideoLoop.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "project/sequence/LoopFinder.h"
#include "sources/VideoReader.h"

namespace lumirra {
namespace {

/// The pictures of the part, by their numbers in the video.
struct Pictures {
    int first = 0;
    int step = 1;
    int count = 0;
    double all = 0;  ///< of the video

    /// Safely within the picture.
    double PositionOf(int number) const { return (number + 0.05) / all; }
};

Pictures PicturesOf(const VideoInfo& info, float start, float end) {
    constexpr double kRounding = 1e-3;
    Pictures pictures;
    pictures.all = info.durationSeconds * info.framesPerSecond;
    if (!(pictures.all >= 1)) {
        return pictures;
    }
    const double last =
        std::min(std::floor(static_cast<double>(end) * pictures.all + kRounding), pictures.all - 1);
    pictures.first = static_cast<int>(static_cast<double>(start) * pictures.all + kRounding);
    const int count = std::max(static_cast<int>(last) - pictures.first + 1, 0);
    pictures.step = std::max((count + kMostLoopPictures - 1) / kMostLoopPictures, 1);
    pictures.count = count / pictures.step;
    return pictures;
}

}  // namespace

Outcome<std::optional<VideoLoop>> FindVideoLoop(
    const QString& path, float startPosition, float endPosition, double leastSeconds,
    const std::stop_token& stop, const std::function<void(int done, int total)>& onProgress) {
    auto video = VideoReader::Open(path);
    if (!video) {
        return video.failure();
    }
    VideoReader reader = *std::move(video);
    const double framesPerSecond = reader.Info().framesPerSecond;
    const Pictures pictures = PicturesOf(reader.Info(), startPosition, endPosition);
    std::vector<PictureSignature> signatures;
    for (int i = 0; i < pictures.count && !stop.stop_requested(); ++i) {
        const int number = pictures.first + i * pictures.step;
        const SourceImage picture = reader.At(pictures.PositionOf(number), stop);
        if (picture.problem && !stop.stop_requested()) {
            return *picture.problem;  // what stands in for pictures would match best
        }
        signatures.push_back(SignatureOf(picture.image));
        onProgress(i + 1, pictures.count);
    }
    const int least = std::max(
        2, static_cast<int>(std::ceil(leastSeconds * framesPerSecond / pictures.step - 1e-6)));
    const auto loop = FindLoop(signatures, least, stop);
    if (!loop || stop.stop_requested()) {
        return std::optional<VideoLoop>();
    }
    const int first = pictures.first + loop->first * pictures.step;
    const int behind = pictures.first + loop->end * pictures.step;
    return std::optional<VideoLoop>({static_cast<float>(pictures.PositionOf(first)),
                                     static_cast<float>(pictures.PositionOf(behind - 1)),
                                     (behind - first) / framesPerSecond, loop->difference,
                                     pictures.step});
}

}  // namespace lumirra
