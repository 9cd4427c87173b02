#pragma once

#include <QImage>
#include <QString>

#include "sources/video/Ffmpeg.h"

namespace lumirra {

/// What the numbers of a frame mean, with everything that the file leaves open decided.
struct FrameColor {
    AVColorSpace matrix = AVCOL_SPC_SMPTE170M;
    AVColorTransferCharacteristic transfer = AVCOL_TRC_BT709;
    AVColorPrimaries primaries = AVCOL_PRI_BT709;
    bool fullRange = false;
    bool tagged = false;  ///< the matrix is the file's own word

    bool NeedsToneMap() const;
    bool IsWide() const;
    QString MatrixName() const;
};

/// Untagged: BT.709 from 720 rows up, else BT.601, limited range unless the pixel format says full.
FrameColor ColorOf(const AVFrame& frame);

/// How the stored picture is turned and stretched to be shown.
struct FrameShape {
    int shownWidth = 0;  ///< before turning: the stored picture with square pixels
    int shownHeight = 0;
    int quarterTurns = 0;  ///< clockwise, after the flip
    bool flipped = false;  ///< left and right exchanged

    int UprightWidth() const { return quarterTurns % 2 == 0 ? shownWidth : shownHeight; }
    int UprightHeight() const { return quarterTurns % 2 == 0 ? shownHeight : shownWidth; }
};

/// `displayMatrix` is null or nine numbers as containers store them.
FrameShape ShapeOf(int width, int height, AVRational pixelAspect,
                   const std::int32_t* displayMatrix);

/// Turns decoded frames into Format_RGBA8888 pictures, sRGB, straight alpha. Not thread-safe.
class FrameConverter {
  public:
    /// A null picture when there is no memory or the pixel format is not known.
    QImage Convert(const AVFrame& frame, const FrameShape& shape);

  private:
    bool Prepare(const AVFrame& frame, const FrameColor& color, int width, int height,
                 AVPixelFormat target);
    QImage ConvertPlain(const AVFrame& frame, const FrameColor& color, const FrameShape& shape);
    QImage ConvertWide(const AVFrame& frame, const FrameColor& color, const FrameShape& shape);

    FfmpegPtr<SwsContext> scaler_;
};

}  // namespace lumirra
