#include "sources/video/VideoFrameConverter.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <array>
#include <cmath>
#include <new>
#include <utility>

#include "imaging/PictureFormat.h"
#include "sources/video/PlanarYuv.h"
#include "sources/video/WideColor.h"

namespace lumirra {

namespace {

constexpr int kHighDefinitionRows = 720;
// A pixel aspect beyond this is an error in the file, not a shape.
constexpr double kMaxPixelAspect = 8;

// The full-range twins of these formats carry the range in their name alone.
std::pair<AVPixelFormat, bool> PlainFormat(int format) {
    switch (format) {
        case AV_PIX_FMT_YUVJ420P:
            return {AV_PIX_FMT_YUV420P, true};
        case AV_PIX_FMT_YUVJ422P:
            return {AV_PIX_FMT_YUV422P, true};
        case AV_PIX_FMT_YUVJ444P:
            return {AV_PIX_FMT_YUV444P, true};
        case AV_PIX_FMT_YUVJ440P:
            return {AV_PIX_FMT_YUV440P, true};
        case AV_PIX_FMT_YUVJ411P:
            return {AV_PIX_FMT_YUV411P, true};
        default:
            return {static_cast<AVPixelFormat>(format), false};
    }
}

bool IsRgb(int format) {
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    return descriptor && (descriptor->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0;
}

int ScalerMatrix(AVColorSpace matrix) {
    switch (matrix) {
        case AVCOL_SPC_BT709:
            return SWS_CS_ITU709;
        case AVCOL_SPC_FCC:
            return SWS_CS_FCC;
        case AVCOL_SPC_SMPTE240M:
            return SWS_CS_SMPTE240M;
        case AVCOL_SPC_BT2020_NCL:
        case AVCOL_SPC_BT2020_CL:
            return SWS_CS_BT2020;
        default:
            return SWS_CS_ITU601;
    }
}

const std::int32_t* DisplayMatrix(const AVStream& track) {
    std::size_t size = 0;
    const auto* data = av_stream_get_side_data(&track, AV_PKT_DATA_DISPLAYMATRIX, &size);
    return size >= 9 * sizeof(std::int32_t) ? reinterpret_cast<const std::int32_t*>(data) : nullptr;
}

AVRational PixelAspect(const AVStream& track, const AVFrame* frame) {
    if (track.sample_aspect_ratio.num > 0) {
        return track.sample_aspect_ratio;  // the container overrules the stream
    }
    return frame ? frame->sample_aspect_ratio : track.codecpar->sample_aspect_ratio;
}

}  // namespace

bool VideoFrameColor::NeedsToneMap() const {
    return transfer == AVCOL_TRC_SMPTE2084 || transfer == AVCOL_TRC_ARIB_STD_B67;
}

bool VideoFrameColor::IsWide() const {
    return NeedsToneMap() || primaries == AVCOL_PRI_BT2020 || primaries == AVCOL_PRI_SMPTE432 ||
           primaries == AVCOL_PRI_SMPTE431;
}

QString VideoFrameColor::MatrixName() const {
    switch (matrix) {
        case AVCOL_SPC_RGB:
            return QStringLiteral("rgb");
        case AVCOL_SPC_BT709:
            return QStringLiteral("bt709");
        case AVCOL_SPC_FCC:
            return QStringLiteral("fcc");
        case AVCOL_SPC_SMPTE240M:
            return QStringLiteral("smpte240m");
        case AVCOL_SPC_BT2020_NCL:
        case AVCOL_SPC_BT2020_CL:
            return QStringLiteral("bt2020");
        default:
            return QStringLiteral("bt601");
    }
}

VideoFrameColor ColorOf(const AVFrame& frame) {
    VideoFrameColor color;
    color.transfer = frame.color_trc;
    color.primaries = frame.color_primaries;
    if (IsRgb(frame.format)) {
        color.matrix = AVCOL_SPC_RGB;
        color.fullRange = true;
        color.tagged = true;
        return color;
    }
    color.tagged = frame.colorspace != AVCOL_SPC_UNSPECIFIED &&
                   frame.colorspace != AVCOL_SPC_RESERVED && frame.colorspace != AVCOL_SPC_RGB;
    if (color.tagged) {
        color.matrix = frame.colorspace;
    } else if (color.NeedsToneMap() || color.primaries == AVCOL_PRI_BT2020) {
        color.matrix = AVCOL_SPC_BT2020_NCL;
    } else {
        color.matrix = frame.height >= kHighDefinitionRows ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    }
    color.fullRange = PlainFormat(frame.format).second || frame.color_range == AVCOL_RANGE_JPEG;
    return color;
}

DisplayTransform DisplayOf(const AVStream& track, const AVFrame* frame) {
    DisplayTransform display;
    const AVRational stored = PixelAspect(track, frame);
    const double aspect = stored.num > 0 && stored.den > 0 ? av_q2d(stored) : 1;
    const bool usable = aspect <= kMaxPixelAspect && aspect >= 1 / kMaxPixelAspect;
    display.pixelAspect = usable ? aspect : 1;
    const std::int32_t* matrix = DisplayMatrix(track);
    if (!matrix) {
        return display;
    }
    // A point (x, y), y downwards, goes to (a x + c y, b x + d y).
    const double a = matrix[0];
    const double b = matrix[1];
    const double c = matrix[3];
    const double d = matrix[4];
    display.flipped = a * d - b * c < 0;
    const double sign = display.flipped ? -1 : 1;  // the flip comes first: x to -x
    constexpr double kQuarterTurn = 1.57079632679489662;
    const long turns = std::lround(std::atan2(sign * b, sign * a) / kQuarterTurn);
    display.quarterTurns = static_cast<int>((turns + 4) % 4);
    return display;
}

QImage VideoFrameConverter::Convert(const AVFrame& frame, const DisplayTransform& display) {
    const VideoFrameColor color = ColorOf(frame);
    const QSize size = display.StretchedSize({frame.width, frame.height});
    return display.Upright(color.IsWide() ? ConvertWide(frame, color, size)
                                          : ConvertPlain(frame, color, size));
}

bool VideoFrameConverter::Prepare(const AVFrame& frame, const VideoFrameColor& color, int width,
                                  int height, AVPixelFormat target) {
    constexpr int kFlags = SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP;
    // The library keeps the context while nothing about the pictures changes.
    scaler_.reset(sws_getCachedContext(scaler_.release(), frame.width, frame.height,
                                       PlainFormat(frame.format).first, width, height, target,
                                       kFlags, nullptr, nullptr, nullptr));
    if (!scaler_) {
        if (sws_isSupportedInput(PlainFormat(frame.format).first) != 0) {
            throw std::bad_alloc();
        }
        return false;
    }
    constexpr int kOne = 1 << 16;
    const int* matrix = sws_getCoefficients(ScalerMatrix(color.matrix));
    sws_setColorspaceDetails(scaler_.get(), matrix, color.fullRange ? 1 : 0, matrix, 1, 0, kOne,
                             kOne);
    return true;
}

QImage VideoFrameConverter::ConvertPlain(const AVFrame& frame, const VideoFrameColor& color,
                                         const QSize& size) {
    if (size == QSize(frame.width, frame.height) && IsPlanarYuv(frame, color)) {
        return PlanarYuvPicture(frame, color);
    }
    QImage image = NewPicture(size, QImage::Format_RGBA8888);
    if (!Prepare(frame, color, image.width(), image.height(), AV_PIX_FMT_RGBA)) {
        return {};
    }
    std::uint8_t* const rows[4] = {image.bits(), nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(image.bytesPerLine()), 0, 0, 0};
    const int done =
        sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, rows, strides);
    return done == image.height() ? image : QImage();
}

QImage VideoFrameConverter::ConvertWide(const AVFrame& frame, const VideoFrameColor& color,
                                        const QSize& size) {
    QImage deep = NewPicture(size, QImage::Format_RGBA64);
    if (!Prepare(frame, color, deep.width(), deep.height(), AV_PIX_FMT_RGBA64)) {
        return {};
    }
    std::uint8_t* const rows[4] = {deep.bits(), nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(deep.bytesPerLine()), 0, 0, 0};
    const int done =
        sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, rows, strides);
    return done == deep.height() ? ToStandardColor(deep, color.transfer, color.primaries)
                                 : QImage();
}

}  // namespace lumirra
