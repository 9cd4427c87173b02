#pragma once

#include <QImage>
#include <QString>

#include "imaging/DisplayTransform.h"
#include "sources/video/Ffmpeg.h"

namespace lumirra {

/// What the numbers of a frame mean, with everything that the file leaves open decided.
struct VideoFrameColor {
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
VideoFrameColor ColorOf(const AVFrame& frame);

/// How the track's pictures are to be shown. `frame` is one of them, or null when there is none: it
/// may know of its pixels' shape what the file does not say.
DisplayTransform DisplayOf(const AVStream& track, const AVFrame* frame);

/// Turns decoded frames into Format_RGBA8888 pictures, sRGB, straight alpha. Not thread-safe.
class VideoFrameConverter {
  public:
    /// A null picture when there is no memory or the pixel format is not known.
    QImage Convert(const AVFrame& frame, const DisplayTransform& display);

  private:
    bool Prepare(const AVFrame& frame, const VideoFrameColor& color, int width, int height,
                 AVPixelFormat target);
    QImage ConvertPlain(const AVFrame& frame, const VideoFrameColor& color, const QSize& size);
    QImage ConvertWide(const AVFrame& frame, const VideoFrameColor& color, const QSize& size);

    FfmpegPtr<SwsContext> scaler_;
};

}  // namespace lumirra
