#include "sources/VideoReader.h"

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

}  // namespace

struct VideoReader::State {
    State(VideoStream stream, long long keepBytes) : finder(std::move(stream), keepBytes) {}

    void FillInfo(const AVFrame& frame);
    void FillInfoWithoutFrame();
    SourceImage Picture(const VideoFrame& found);
    SourceImage White(double seconds) const;
    Failure Problem(double seconds, const QString& what) const;
    FrameShape Shape(const AVFrame& frame) const;

    FrameFinder finder;
    FrameConverter converter;
    VideoInfo info;
    double slackSeconds = 0;
    // The last picture, which is asked for again and again while a marker stands still.
    std::int64_t lastTime = kNoTime;
    SourceImage last;
    std::optional<Failure> undecodable;  ///< why nothing is
};

FrameShape VideoReader::State::Shape(const AVFrame& frame) const {
    const AVStream& track = finder.Stream().Track();
    return ShapeOf(frame.width, frame.height, PixelAspect(track, &frame), DisplayMatrix(track));
}

void VideoReader::State::FillInfo(const AVFrame& frame) {
    const AVStream& track = finder.Stream().Track();
    const FrameColor color = ColorOf(frame);
    const FrameShape shape = Shape(frame);
    info.durationSeconds = MediaDuration(finder.Stream());
    slackSeconds = TimeSlack(finder.Stream(), info.durationSeconds);
    info.storedWidth = frame.width;
    info.storedHeight = frame.height;
    info.shownWidth = shape.UprightWidth();
    info.shownHeight = shape.UprightHeight();
    info.framesPerSecond = track.avg_frame_rate.den > 0 ? av_q2d(track.avg_frame_rate) : 0;
    info.rotationDegrees = 90 * shape.quarterTurns;
    info.codec = Name(avcodec_get_name(track.codecpar->codec_id));
    info.pixelFormat = Name(av_get_pix_fmt_name(static_cast<AVPixelFormat>(frame.format)));
    info.colorMatrix = color.MatrixName();
    info.colorTransfer = Name(av_color_transfer_name(color.transfer));
    info.colorPrimaries = Name(av_color_primaries_name(color.primaries));
    info.fullRange = color.fullRange;
    info.colorTagged = color.tagged;
    info.hasSound = HasSound(*finder.Stream().Format());
}

Failure VideoReader::State::Problem(double seconds, const QString& what) const {
    return FileFailure(
        Failure::Kind::Unreadable, finder.Stream().Path(),
        QStringLiteral("%1 at %2.").arg(what, VideoTools::TimeLabel(std::max(seconds, 0.0))));
}

SourceImage VideoReader::State::White(double seconds) const {
    SourceImage white;
    white.image = QImage(info.storedWidth, info.storedHeight, QImage::Format_RGBA8888);
    white.image.fill(Qt::white);
    white.problem = info.decodable
                        ? Problem(seconds, QStringLiteral("has no picture that can be decoded"))
                        : undecodable;
    return white;
}

SourceImage VideoReader::State::Picture(const VideoFrame& found) {
    if (found.time == lastTime) {
        return last;
    }
    const double seconds = static_cast<double>(found.time) * finder.Stream().TickSeconds();
    last = {};
    last.image = converter.Convert(*found.frame, Shape(*found.frame));
    if (last.image.isNull()) {
        last = White(seconds);
    } else if (found.damaged) {
        last.problem = Problem(seconds, QStringLiteral("is damaged"));
        last.problem->kind = Failure::Kind::Damaged;
    }
    lastTime = found.time;
    return last;
}

// The track by its file's own word, for want of a frame.
void VideoReader::State::FillInfoWithoutFrame() {
    const AVCodecParameters& parameters = *finder.Stream().Track().codecpar;
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
    info.decodable = false;
    undecodable = finder.Stream().DecoderProblem();
    if (!undecodable) {
        undecodable = FileFailure(Failure::Kind::Unreadable, finder.Stream().Path(),
                                  QStringLiteral("has no picture in it that can be decoded."));
    }
}

Outcome<VideoReader> VideoReader::Open(const QString& path, const VideoReaderOptions& options) {
    auto stream = VideoStream::Open(path);
    if (!stream) {
        return stream.failure();
    }
    auto state = std::make_unique<State>(*std::move(stream), options.keepBytes);
    const FrameFinder::Found first = state->finder.At(0);
    if (first.frame) {
        state->FillInfo(*first.frame->frame);
    } else {
        state->FillInfoWithoutFrame();
    }
    return VideoReader(std::move(state));
}

SourceImage VideoReader::At(double position) {
    State& state = *state_;
    const double bounded = std::isfinite(position) ? std::clamp(position, 0.0, 1.0) : 0.0;
    const double seconds = state.info.durationSeconds * bounded;
    const std::int64_t time = state.finder.Stream().TicksOf(seconds + state.slackSeconds);
    const FrameFinder::Found found = state.finder.At(time);
    return found.frame && !found.lost ? state.Picture(*found.frame) : state.White(seconds);
}

VideoReader::VideoReader(std::unique_ptr<State> state) : state_(std::move(state)) {}
VideoReader::VideoReader(VideoReader&&) noexcept = default;
VideoReader& VideoReader::operator=(VideoReader&&) noexcept = default;
VideoReader::~VideoReader() = default;

const VideoInfo& VideoReader::Info() const {
    return state_->info;
}

}  // namespace lumirra
