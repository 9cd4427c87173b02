#include "sources/video/PlanarYuv.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "imaging/PictureFormat.h"
#include "sources/video/YuvRows.h"

namespace lumirra {

namespace {

struct Halving {
    bool across = false;
    bool down = false;
};

std::optional<Halving> HalvingOf(int format) {
    switch (format) {
        case AV_PIX_FMT_YUV420P:
        case AV_PIX_FMT_YUVJ420P:
            return Halving{true, true};
        case AV_PIX_FMT_YUV422P:
        case AV_PIX_FMT_YUVJ422P:
            return Halving{true, false};
        case AV_PIX_FMT_YUV444P:
        case AV_PIX_FMT_YUVJ444P:
            return Halving{false, false};
        default:
            return std::nullopt;
    }
}

struct Weights {
    double red = 0;
    double blue = 0;
};

// Of luma, by ITU-R BT.709, BT.601, BT.2020, SMPTE 240M and the FCC's rule.
std::optional<Weights> LumaWeights(AVColorSpace matrix) {
    switch (matrix) {
        case AVCOL_SPC_BT709:
            return Weights{0.2126, 0.0722};
        case AVCOL_SPC_BT470BG:
        case AVCOL_SPC_SMPTE170M:
            return Weights{0.299, 0.114};
        case AVCOL_SPC_BT2020_NCL:
            return Weights{0.2627, 0.0593};
        case AVCOL_SPC_SMPTE240M:
            return Weights{0.212, 0.087};
        case AVCOL_SPC_FCC:
            return Weights{0.30, 0.11};
        default:
            return std::nullopt;
    }
}

YuvMatrix MatrixOf(const Weights& weights, bool fullRange) {
    const double lumaScale = fullRange ? 1 : 255.0 / 219;
    const double chromaScale = (fullRange ? 1 : 255.0 / 224) / 16;  // from sixteenths
    const double green = 1 - weights.red - weights.blue;
    const double ofV = 2 * (1 - weights.red) * chromaScale;
    const double ofU = 2 * (1 - weights.blue) * chromaScale;
    YuvMatrix matrix;
    matrix.lumaOffset = fullRange ? 0 : 16;
    matrix.luma = static_cast<float>(lumaScale);
    matrix.redOfV = static_cast<float>(ofV);
    matrix.greenOfU = static_cast<float>(-ofU * weights.blue / green);
    matrix.greenOfV = static_cast<float>(-ofV * weights.red / green);
    matrix.blueOfU = static_cast<float>(ofU);
    return matrix;
}

// Chroma samples lie on the even pixel, or half way between an even pixel and the next one.
bool OnEvenColumn(AVChromaLocation location) {
    return location != AVCHROMA_LOC_CENTER && location != AVCHROMA_LOC_TOP &&
           location != AVCHROMA_LOC_BOTTOM;
}
bool OnEvenRow(AVChromaLocation location) {
    return location == AVCHROMA_LOC_TOPLEFT || location == AVCHROMA_LOC_TOP;
}

/// One chroma plane, brought to full size row by row.
class ChromaRows {
  public:
    ChromaRows(const AVFrame& frame, int plane, Halving halving)
        : data_(frame.data[plane]),
          stride_(frame.linesize[plane]),
          halving_(halving),
          columns_(halving.across ? (frame.width + 1) / 2 : frame.width),
          rows_(halving.down ? (frame.height + 1) / 2 : frame.height),
          onEvenColumn_(OnEvenColumn(frame.chroma_location)),
          onEvenRow_(OnEvenRow(frame.chroma_location)),
          quarters_(static_cast<std::size_t>(columns_) + 2),
          full_(static_cast<std::size_t>(columns_) * (halving.across ? 2 : 1)) {}

    const std::int16_t* Row(int y) {
        MixRows(y);
        SpreadColumns();
        return full_.data();
    }

  private:
    const std::uint8_t* Source(int row) const {
        return data_ + static_cast<std::ptrdiff_t>(stride_) * std::clamp(row, 0, rows_ - 1);
    }

    // Into quarters_, from its second place on: quarters of a level from the middle.
    void MixRows(int y) {
        int near = y;
        int far = y;
        int nearWeight = 4;
        if (halving_.down) {
            near = y / 2;
            const bool even = y % 2 == 0;
            far = even && !onEvenRow_ ? near - 1 : near + 1;
            nearWeight = !onEvenRow_ ? 3 : even ? 4 : 2;
        }
        const std::uint8_t* a = Source(near);
        const std::uint8_t* b = Source(far);
        const int farWeight = 4 - nearWeight;
        std::int16_t* out = quarters_.data() + 1;
        for (int x = 0; x < columns_; ++x) {
            out[x] = static_cast<std::int16_t>(a[x] * nearWeight + b[x] * farWeight - 4 * 128);
        }
        out[-1] = out[0];
        out[columns_] = out[columns_ - 1];
    }

    void SpreadColumns() {
        const std::int16_t* in = quarters_.data() + 1;
        std::int16_t* out = full_.data();
        if (!halving_.across) {
            for (int x = 0; x < columns_; ++x) {
                out[x] = static_cast<std::int16_t>(4 * in[x]);
            }
        } else if (onEvenColumn_) {
            for (int x = 0; x < columns_; ++x) {
                out[2 * x] = static_cast<std::int16_t>(4 * in[x]);
                out[2 * x + 1] = static_cast<std::int16_t>(2 * (in[x] + in[x + 1]));
            }
        } else {
            for (int x = 0; x < columns_; ++x) {
                out[2 * x] = static_cast<std::int16_t>(3 * in[x] + in[x - 1]);
                out[2 * x + 1] = static_cast<std::int16_t>(3 * in[x] + in[x + 1]);
            }
        }
    }

    const std::uint8_t* data_;
    int stride_;
    Halving halving_;
    int columns_;
    int rows_;
    bool onEvenColumn_;
    bool onEvenRow_;
    std::vector<std::int16_t> quarters_;  // one more on either side
    std::vector<std::int16_t> full_;
};

}  // namespace

bool IsPlanarYuv(const AVFrame& frame, const VideoFrameColor& color) {
    return HalvingOf(frame.format) && LumaWeights(color.matrix);
}

QImage PlanarYuvPicture(const AVFrame& frame, const VideoFrameColor& color) {
    QImage image = NewPicture({frame.width, frame.height}, QImage::Format_RGBA8888);
    const YuvMatrix matrix = MatrixOf(*LumaWeights(color.matrix), color.fullRange);
    const Halving halving = *HalvingOf(frame.format);
    ChromaRows u(frame, 1, halving);
    ChromaRows v(frame, 2, halving);
    for (int y = 0; y < frame.height; ++y) {
        const std::uint8_t* luma =
            frame.data[0] + static_cast<std::ptrdiff_t>(frame.linesize[0]) * y;
        ConvertYuvRow(matrix, luma, u.Row(y), v.Row(y), image.scanLine(y),
                      static_cast<std::size_t>(frame.width));
    }
    return image;
}

}  // namespace lumirra
