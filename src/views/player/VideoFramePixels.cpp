#include "views/player/VideoFramePixels.h"

#include <QVideoFrameFormat>
#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "imaging/PictureFormat.h"

namespace lumirra {
namespace {

/// Where the samples of a YUV picture lie. Steps and shifts let one loop read every layout.
struct Layout {
    int bytes = 1;       ///< of a sample
    int rightShift = 0;  ///< from a sample to 8 bits
    int chromaShiftX = 1;
    int chromaShiftY = 1;
    int chromaStep = 1;  ///< samples from one U to the next
    int uPlane = 1;
    int vPlane = 2;
    int vOffset = 0;  ///< samples from U to V when they share a plane
};

std::optional<Layout> LayoutOf(QVideoFrameFormat::PixelFormat format) {
    switch (format) {
        case QVideoFrameFormat::Format_YUV420P:
            return Layout{};
        case QVideoFrameFormat::Format_YV12:
            return Layout{.uPlane = 2, .vPlane = 1};
        case QVideoFrameFormat::Format_YUV422P:
            return Layout{.chromaShiftY = 0};
        case QVideoFrameFormat::Format_NV12:
            return Layout{.chromaStep = 2, .vPlane = 1, .vOffset = 1};
        case QVideoFrameFormat::Format_P010:
        case QVideoFrameFormat::Format_P016:
            return Layout{.bytes = 2, .rightShift = 8, .chromaStep = 2, .vPlane = 1, .vOffset = 1};
        case QVideoFrameFormat::Format_YUV420P10:
            return Layout{.bytes = 2, .rightShift = 2};
        default:
            return std::nullopt;
    }
}

/// 16.16 fixed point: R = y*Y + rv*V, G = y*Y + gu*U + gv*V, B = y*Y + bu*U, Y from `black`.
struct Matrix {
    int y, rv, gu, gv, bu, black;
};

/// Kr and Kb of the standards: BT.601, BT.709, BT.2020.
Matrix MatrixOf(const QVideoFrameFormat& format) {
    double kr = 0.299;
    double kb = 0.114;
    const bool large = format.frameHeight() >= 720;
    const auto space = format.colorSpace();
    if (space == QVideoFrameFormat::ColorSpace_BT2020) {
        kr = 0.2627;
        kb = 0.0593;
    } else if (space == QVideoFrameFormat::ColorSpace_BT709 ||
               (space == QVideoFrameFormat::ColorSpace_Undefined && large)) {
        kr = 0.2126;
        kb = 0.0722;
    }
    const bool full = format.colorRange() == QVideoFrameFormat::ColorRange_Full;
    const double yScale = full ? 1 : 255.0 / 219;
    const double cScale = full ? 1 : 255.0 / 224;
    const double kg = 1 - kr - kb;
    const auto fixed = [](double value) { return static_cast<int>(std::lround(value * 65536)); };
    return {fixed(yScale),
            fixed(cScale * 2 * (1 - kr)),
            -fixed(cScale * 2 * (1 - kb) * kb / kg),
            -fixed(cScale * 2 * (1 - kr) * kr / kg),
            fixed(cScale * 2 * (1 - kb)),
            full ? 0 : 16};
}

int Byte(int fixed) {
    return std::clamp((fixed + 32768) >> 16, 0, 255);
}

/// The two samples, a quarter pixel either side of the middle, that stand for an output pixel.
struct Taps {
    int first;
    int second;
};

std::vector<Taps> TapsOf(int from, int to) {
    std::vector<Taps> taps(static_cast<size_t>(to));
    for (int i = 0; i < to; ++i) {
        const auto at = [&](int quarter) {
            return static_cast<int>((4 * qint64(i) + quarter) * from / (4 * qint64(to)));
        };
        taps[static_cast<size_t>(i)] = {at(1), at(3)};
    }
    return taps;
}

template <typename Sample>
void Convert(const QVideoFrame& frame, const Layout& layout, const Matrix& matrix, QImage& out) {
    const std::vector<Taps> columns = TapsOf(frame.width(), out.width());
    const std::vector<Taps> rows = TapsOf(frame.height(), out.height());
    const auto row = [&](int plane, int y) {
        return reinterpret_cast<const Sample*>(frame.bits(plane) +
                                               qsizetype(y) * frame.bytesPerLine(plane));
    };
    const int shift = layout.rightShift;
    for (int y = 0; y < out.height(); ++y) {
        const Taps pair = rows[static_cast<size_t>(y)];
        const Sample* upper = row(0, pair.first);
        const Sample* lower = row(0, pair.second);
        const int chromaY = pair.second >> layout.chromaShiftY;
        const Sample* us = row(layout.uPlane, chromaY);
        const Sample* vs = row(layout.vPlane, chromaY) + layout.vOffset;
        auto* to = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (size_t x = 0; x < columns.size(); ++x) {
            const auto [left, right] = columns[x];
            const int sum = upper[left] + upper[right] + lower[left] + lower[right];
            const int chromaX = (right >> layout.chromaShiftX) * layout.chromaStep;
            const int luma = ((sum >> shift) - 4 * matrix.black) * matrix.y / 4;
            const int u = (us[chromaX] >> shift) - 128;
            const int v = (vs[chromaX] >> shift) - 128;
            to[x] = qRgb(Byte(luma + matrix.rv * v), Byte(luma + matrix.gu * u + matrix.gv * v),
                         Byte(luma + matrix.bu * u));
        }
    }
}

/// Mapped for reading while it lives.
class Mapped {
  public:
    explicit Mapped(const QVideoFrame& frame)
        : frame_(frame), ok_(frame_.map(QVideoFrame::ReadOnly)) {}
    ~Mapped() {
        if (ok_) {
            frame_.unmap();
        }
    }
    Mapped(const Mapped&) = delete;
    Mapped& operator=(const Mapped&) = delete;

    bool Ok() const { return ok_; }
    const QVideoFrame& Frame() const { return frame_; }

  private:
    QVideoFrame frame_;
    bool ok_;
};

bool PlanesAreThere(const QVideoFrame& frame, const Layout& layout) {
    const int planes = std::max(layout.uPlane, layout.vPlane) + 1;
    if (frame.planeCount() < planes) {
        return false;
    }
    const qsizetype chromaRows =
        (frame.height() + (1 << layout.chromaShiftY) - 1) >> layout.chromaShiftY;
    for (int plane = 0; plane < planes; ++plane) {
        const qsizetype rows = plane == 0 ? frame.height() : chromaRows;
        const qsizetype samples =
            plane == 0 ? frame.width()
                       : ((frame.width() + (1 << layout.chromaShiftX) - 1) >> layout.chromaShiftX) *
                             layout.chromaStep;
        if (frame.bits(plane) == nullptr || frame.bytesPerLine(plane) < samples * layout.bytes ||
            frame.mappedBytes(plane) <
                (rows - 1) * frame.bytesPerLine(plane) + samples * layout.bytes) {
            return false;
        }
    }
    return true;
}

/// False when the planes are not as large as the layout says: such a frame is not touched.
bool ConvertMapped(const QVideoFrame& frame, const Layout& layout, QImage& image) {
    const Mapped mapped(frame);
    if (!mapped.Ok() || !PlanesAreThere(mapped.Frame(), layout)) {
        return false;
    }
    const Matrix matrix = MatrixOf(frame.surfaceFormat());
    if (layout.bytes == 1) {
        Convert<quint8>(mapped.Frame(), layout, matrix, image);
    } else {
        Convert<quint16>(mapped.Frame(), layout, matrix, image);
    }
    return true;
}

/// As stored, by the toolkit; null when it cannot.
QImage StoredPicture(QVideoFrame frame) {
    frame.setRotationAngle(QVideoFrame::Rotation0);
    frame.setMirrored(false);
    return frame.toImage();
}

}  // namespace

bool FrameToImage(const QVideoFrame& frame, const DisplayTransform& display, const QSize& size,
                  QImage& image) try {
    if (size.isEmpty()) {
        return false;
    }
    const QSize stretched = display.Turned(size);
    const std::optional<Layout> layout = LayoutOf(frame.pixelFormat());
    if (!layout) {
        const QImage whole = StoredPicture(frame);
        if (!whole.isNull()) {
            image = display.Upright(Converted(Made(whole.scaled(stretched)), QImage::Format_RGB32));
        }
        return !whole.isNull();
    }
    const bool plain = display.quarterTurns == 0 && !display.flipped;
    QImage turned;
    QImage& pixels = plain ? image : turned;
    if (pixels.size() != stretched || pixels.format() != QImage::Format_RGB32) {
        pixels = NewPicture(stretched, QImage::Format_RGB32);
    }
    if (!ConvertMapped(frame, *layout, pixels)) {
        return false;
    }
    if (!plain) {
        image = display.Upright(std::move(turned));
    }
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

}  // namespace lumirra
