#include "sources/video/DecodedVideo.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <new>

#include "imaging/PictureFormat.h"
#include "sources/video/MediaTime.h"
#include "sources/video/VideoFrameConverter.h"
#include "sources/video/VideoFrameFinder.h"

namespace lumirra {

namespace {

constexpr std::int64_t kNoTime = AV_NOPTS_VALUE;

QString Name(const char* text) {
    return QLatin1String(text ? text : "unknown");
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
    SourceImage At(double position, const std::stop_token& stop) override;
    NearImage Near(double position, const std::stop_token& stop) override;

  private:
    void FillInfo(const AVFrame& frame);
    void FillInfoWithoutFrame();
    SourceImage Picture(const VideoFrame& found);
    SourceImage EarlyPicture(const VideoFrame& found, double seconds);
    SourceImage White(double seconds) const;
    double SecondsOf(double position) const;
    Failure Problem(double seconds, const QString& what) const;

    VideoFrameFinder finder_;
    VideoFrameConverter converter_;
    VideoInfo info_;
    double slackSeconds_ = 0;
    // The last picture, which is asked for again and again while a marker stands still.
    std::int64_t lastTime_ = kNoTime;
    SourceImage last_;
    std::optional<Failure> undecodable_;  ///< why nothing is
};

void DecodedVideo::FillInfo(const AVFrame& frame) {
    const AVStream& track = finder_.Stream().Track();
    const VideoFrameColor color = ColorOf(frame);
    info_.display = DisplayOf(track, &frame);
    const QSize shown = info_.display.ShownSize({frame.width, frame.height});
    info_.durationSeconds = MediaDuration(finder_.Stream());
    slackSeconds_ = TimeSlack(finder_.Stream(), info_.durationSeconds);
    info_.storedWidth = frame.width;
    info_.storedHeight = frame.height;
    info_.shownWidth = shown.width();
    info_.shownHeight = shown.height();
    info_.framesPerSecond = track.avg_frame_rate.den > 0 ? av_q2d(track.avg_frame_rate) : 0;
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
    white.image = NewPicture({info_.storedWidth, info_.storedHeight}, QImage::Format_RGBA8888);
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
    lastTime_ = kNoTime;
    last_ = {};
    last_.image =
        converter_.Convert(*found.frame, DisplayOf(finder_.Stream().Track(), found.frame.get()));
    if (last_.image.isNull()) {
        last_ = White(seconds);
    } else if (found.damaged) {
        last_.problem = Problem(seconds, QStringLiteral("is damaged"));
        last_.problem->kind = Failure::Kind::Damaged;
    }
    lastTime_ = found.time;
    return last_;
}

// The first picture that can be decoded, for the time before it.
SourceImage DecodedVideo::EarlyPicture(const VideoFrame& found, double seconds) {
    SourceImage picture = Picture(found);
    if (!picture.problem) {
        picture.problem = Problem(seconds, QStringLiteral("is damaged"));
        picture.problem->kind = Failure::Kind::Damaged;
    }
    return picture;
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
    const VideoFrameFinder::Found first = finder_.At(0, {});
    if (first.frame) {
        FillInfo(*first.frame->frame);
    } else {
        FillInfoWithoutFrame();
    }
}

double DecodedVideo::SecondsOf(double position) const {
    return info_.durationSeconds * (std::isfinite(position) ? std::clamp(position, 0.0, 1.0) : 0.0);
}

NearImage DecodedVideo::Near(double position, const std::stop_token& stop) try {
    // One to three frames of a 4K film, so that it is drawn more than twelve times a second.
    constexpr std::chrono::milliseconds kMoment{15};
    const std::int64_t time = finder_.Stream().TicksOf(SecondsOf(position) + slackSeconds_);
    const auto near = finder_.Near(time, VideoFrameFinder::Clock::now() + kMoment, stop);
    if (near.arrived || !near.frame) {
        return {At(position, stop), true};
    }
    return {Picture(*near.frame), false};
} catch (const std::bad_alloc&) {
    return {{QImage(), NoMemoryFor(finder_.Stream().Path())}, true};
}

SourceImage DecodedVideo::At(double position, const std::stop_token& stop) try {
    const double seconds = SecondsOf(position);
    const std::int64_t time = finder_.Stream().TicksOf(seconds + slackSeconds_);
    const VideoFrameFinder::Found found = finder_.At(time, stop);
    if (stop.stop_requested()) {
        return {{}, Failure{Failure::Kind::Stopped, QStringLiteral("Stopped."), {}}};
    }
    if (found.frame && found.lost && found.frame->first && found.frame->time > time) {
        return EarlyPicture(*found.frame, seconds);
    }
    return found.frame && !found.lost ? Picture(*found.frame) : White(seconds);
} catch (const std::bad_alloc&) {
    return {QImage(), NoMemoryFor(finder_.Stream().Path())};
}

}  // namespace

Outcome<std::unique_ptr<OpenedVideo>> OpenVideo(const QString& path,
                                                const VideoReaderOptions& options) try {
    auto stream = VideoStream::Open(path);
    if (!stream) {
        return stream.failure();
    }
    auto video = std::make_unique<DecodedVideo>(*std::move(stream), options.keepBytes);
    video->ReadFirstFrame();
    return std::unique_ptr<OpenedVideo>(std::move(video));
} catch (const std::bad_alloc&) {
    return NoMemoryFor(path);
}

}  // namespace lumirra
