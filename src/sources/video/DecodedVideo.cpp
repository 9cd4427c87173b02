#include "sources/video/DecodedVideo.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <new>

#include "sources/video/FrameConverter.h"
#include "sources/video/FrameFinder.h"
#include "sources/video/MediaTime.h"

namespace lumirra {

namespace {

constexpr std::int64_t kNoTime = AV_NOPTS_VALUE;

QString Name(const char* text) {
    return QLatin1String(text ? text : "unknown");
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

bool HasSound(const AVFormatContext& format) {
    return std::any_of(format.streams, format.streams + format.nb_streams, [](const AVStream* s) {
        return s->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
    });
}

class DecodedVideo final : public OpenedVideo {
  public:
    DecodedVideo(VideoStream stream, long long keepBytes) : finder_(std::move(stream), keepBytes) {}

    void ReadFirstFrame();
    const VideoInfo& Info() const override { return info_; }
    SourceImage At(double position) override;

  private:
    void FillInfo(const AVFrame& frame);
    void FillInfoWithoutFrame();
    SourceImage Picture(const VideoFrame& found);
    SourceImage White(double seconds) const;
    Failure Problem(double seconds, const QString& what) const;
    FrameShape Shape(const AVFrame& frame) const;

    FrameFinder finder_;
    FrameConverter converter_;
    VideoInfo info_;
    double slackSeconds_ = 0;
    // The last picture, which is asked for again and again while a marker stands still.
    std::int64_t lastTime_ = kNoTime;
    SourceImage last_;
    std::optional<Failure> undecodable_;  ///< why nothing is
};

FrameShape DecodedVideo::Shape(const AVFrame& frame) const {
    const AVStream& track = finder_.Stream().Track();
    return ShapeOf(frame.width, frame.height, PixelAspect(track, &frame), DisplayMatrix(track));
}

void DecodedVideo::FillInfo(const AVFrame& frame) {
    const AVStream& track = finder_.Stream().Track();
    const FrameColor color = ColorOf(frame);
    const FrameShape shape = Shape(frame);
    info_.durationSeconds = MediaDuration(finder_.Stream());
    slackSeconds_ = TimeSlack(finder_.Stream(), info_.durationSeconds);
    info_.storedWidth = frame.width;
    info_.storedHeight = frame.height;
    info_.shownWidth = shape.UprightWidth();
    info_.shownHeight = shape.UprightHeight();
    info_.framesPerSecond = track.avg_frame_rate.den > 0 ? av_q2d(track.avg_frame_rate) : 0;
    info_.rotationDegrees = 90 * shape.quarterTurns;
    info_.codec = Name(avcodec_get_name(track.codecpar->codec_id));
    info_.pixelFormat = Name(av_get_pix_fmt_name(static_cast<AVPixelFormat>(frame.format)));
    info_.colorMatrix = color.MatrixName();
    info_.colorTransfer = Name(av_color_transfer_name(color.transfer));
    info_.colorPrimaries = Name(av_color_primaries_name(color.primaries));
    info_.fullRange = color.fullRange;
    info_.colorTagged = color.tagged;
    info_.hasSound = HasSound(*finder_.Stream().Format());
}

Failure DecodedVideo::Problem(double seconds, const QString& what) const {
    return FileFailure(
        Failure::Kind::Unreadable, finder_.Stream().Path(),
        QStringLiteral("%1 at %2.").arg(what, VideoTools::TimeLabel(std::max(seconds, 0.0))));
}

SourceImage DecodedVideo::White(double seconds) const {
    SourceImage white;
    white.image = QImage(info_.storedWidth, info_.storedHeight, QImage::Format_RGBA8888);
    white.image.fill(Qt::white);
    white.problem = info_.decodable
                        ? Problem(seconds, QStringLiteral("has no picture that can be decoded"))
                        : undecodable_;
    return white;
}

SourceImage DecodedVideo::Picture(const VideoFrame& found) {
    if (found.time == lastTime_) {
        return last_;
    }
    const double seconds = static_cast<double>(found.time) * finder_.Stream().TickSeconds();
    last_ = {};
    last_.image = converter_.Convert(*found.frame, Shape(*found.frame));
    if (last_.image.isNull()) {
        last_ = White(seconds);
    } else if (found.damaged) {
        last_.problem = Problem(seconds, QStringLiteral("is damaged"));
        last_.problem->kind = Failure::Kind::Damaged;
    }
    lastTime_ = found.time;
    return last_;
}

// The track by its file's own word, for want of a frame.
void DecodedVideo::FillInfoWithoutFrame() {
    const AVCodecParameters& parameters = *finder_.Stream().Track().codecpar;
    const FfmpegPtr<AVFrame> frame(av_frame_alloc());
    if (!frame) {
        throw std::bad_alloc();
    }
    frame->width = parameters.width;
    frame->height = parameters.height;
    frame->format = parameters.format;
    frame->sample_aspect_ratio = parameters.sample_aspect_ratio;
    frame->colorspace = parameters.color_space;
    frame->color_range = parameters.color_range;
    frame->color_trc = parameters.color_trc;
    frame->color_primaries = parameters.color_primaries;
    FillInfo(*frame);
    info_.decodable = false;
    undecodable_ = finder_.Stream().DecoderProblem();
    if (!undecodable_) {
        undecodable_ = FileFailure(Failure::Kind::Unreadable, finder_.Stream().Path(),
                                   QStringLiteral("has no picture in it that can be decoded."));
    }
}

void DecodedVideo::ReadFirstFrame() {
    const FrameFinder::Found first = finder_.At(0);
    if (first.frame) {
        FillInfo(*first.frame->frame);
    } else {
        FillInfoWithoutFrame();
    }
}

SourceImage DecodedVideo::At(double position) {
    const double bounded = std::isfinite(position) ? std::clamp(position, 0.0, 1.0) : 0.0;
    const double seconds = info_.durationSeconds * bounded;
    const std::int64_t time = finder_.Stream().TicksOf(seconds + slackSeconds_);
    const FrameFinder::Found found = finder_.At(time);
    return found.frame && !found.lost ? Picture(*found.frame) : White(seconds);
}

}  // namespace

Outcome<std::unique_ptr<OpenedVideo>> OpenVideo(const QString& path,
                                                const VideoReaderOptions& options) {
    auto stream = VideoStream::Open(path);
    if (!stream) {
        return stream.failure();
    }
    auto video = std::make_unique<DecodedVideo>(*std::move(stream), options.keepBytes);
    video->ReadFirstFrame();
    return std::unique_ptr<OpenedVideo>(std::move(video));
}

}  // namespace lumirra
