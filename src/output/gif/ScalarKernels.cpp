#include "output/gif/ScalarKernels.h"

#include <algorithm>
#include <cstdlib>

#include "imaging/kernels/RowKernels.h"
#include "output/gif/Yuv.h"

namespace lumirra::gif::scalar {

bool IsForced() {
    static const bool forced = &Kernels() == &ScalarKernels();
    return forced;
}

void NearestCenters(const std::vector<Yuv>& points, const std::vector<Yuv>& centers,
                    std::vector<std::uint8_t>& nearest) {
    nearest.resize(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto least =
            std::min_element(centers.begin(), centers.end(), [&](const Yuv& a, const Yuv& b) {
                return SquaredDistance(points[i], a) < SquaredDistance(points[i], b);
            });
        nearest[i] = static_cast<std::uint8_t>(least - centers.begin());
    }
}

namespace {

/// Whether the pixel at (x, y) agrees, its neighbours repeated at the border.
bool IsUnchanged(const Canvas& a, const Canvas& b, const DenoiseTuning& tuning, int x, int y) {
    const Rgba& own = a.Row(y)[x];
    const Rgba& other = b.Row(y)[x];
    if (own.a != other.a || std::abs(own.r - other.r) > tuning.pixelLimit ||
        std::abs(own.g - other.g) > tuning.pixelLimit ||
        std::abs(own.b - other.b) > tuning.pixelLimit) {
        return false;
    }
    int r = 0;
    int g = 0;
    int blue = 0;
    for (int dy = -1; dy <= 1; ++dy) {
        const int row = std::clamp(y + dy, 0, a.height - 1);
        for (int dx = -1; dx <= 1; ++dx) {
            const int column = std::clamp(x + dx, 0, a.width - 1);
            const Rgba& p = a.Row(row)[column];
            const Rgba& q = b.Row(row)[column];
            r += p.r - q.r;
            g += p.g - q.g;
            blue += p.b - q.b;
        }
    }
    return std::abs(r) <= tuning.areaLimit && std::abs(g) <= tuning.areaLimit &&
           std::abs(blue) <= tuning.areaLimit;
}

}  // namespace

void UnchangedMask(const Canvas& a, const Canvas& b, const DenoiseTuning& tuning,
                   std::vector<std::uint8_t>& mask) {
    mask.resize(a.Size());
    auto out = mask.begin();
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            *out++ = IsUnchanged(a, b, tuning, x, y) ? 1 : 0;
        }
    }
}

void PreparePixels(const PixelRow& row, const SearchTuning& tuning, SearchPixel* out) {
    const Yuv nowhere{kFarYuv, kFarYuv, kFarYuv};
    for (std::size_t x = 0; x < row.width; ++x) {
        const Rgba target = row.target[x];
        const Rgba shown = row.shown == nullptr ? Rgba{} : row.shown[x];
        const int ahead = row.lifetimes == nullptr ? 0 : row.lifetimes[x] - 1;
        SearchPixel& pixel = out[x];
        pixel.weight = row.weights[x] * (1 + tuning.lasting * static_cast<float>(ahead));
        if (target.a == 0) {
            pixel.target = nowhere;
            pixel.shown = nowhere;
            pixel.keepError = 0;
            continue;
        }
        pixel.target = YuvOf(target);
        pixel.shown = shown.a == 0 ? Yuv{} : YuvOf(shown);
        pixel.keepError = kNeverDrawn;
        if (row.exact) {
            pixel.keepError = target == shown ? 0 : kNeverDrawn;
        } else if (shown.a != 0) {
            const float moved = std::max(
                SquaredDistance(pixel.target, YuvOf(row.drawn[x])) - tuning.deadZone, 0.0F);
            const float wrong =
                std::max(SquaredDistance(pixel.target, pixel.shown) - tuning.goodEnough, 0.0F);
            pixel.keepError = pixel.weight * (moved + tuning.refine * wrong);
        }
    }
}

}  // namespace lumirra::gif::scalar
