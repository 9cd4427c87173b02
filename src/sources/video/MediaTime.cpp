#include "sources/video/MediaTime.h"

#include <algorithm>
#include <cmath>

#include "sources/video/VideoFrameFinder.h"

namespace lumirra {

namespace {

// Movie headers count in milliseconds at the coarsest in use.
constexpr double kHeaderRounding = 0.002;
// Ticks longer than this are made to be the frames' own period: their stamps are exact.
constexpr double kLongestRoundedTick = 0.002;

double Seconds(std::int64_t ticks, AVRational base) {
    return ticks == AV_NOPTS_VALUE ? 0 : static_cast<double>(ticks) * av_q2d(base);
}

double LatestKnownEnd(const AVFormatContext& format) {
    double end = 0;
    for (unsigned i = 0; i < format.nb_streams; ++i) {
        const AVStream& stream = *format.streams[i];
        if (stream.duration > 0 && stream.duration != AV_NOPTS_VALUE) {
            end = std::max(end, Seconds(stream.start_time, stream.time_base) +
                                    Seconds(stream.duration, stream.time_base));
        }
    }
    return end;
}

// By reading through the file; its own reader, so that nobody's place is lost.
double CountedDuration(const VideoStream& stream) {
    auto opened = MediaFile::Open(stream.Path());
    if (!opened) {
        return 0;
    }
    MediaFile file = *std::move(opened);
    if (!file.FindStreams()) {
        return 0;
    }
    const FfmpegPtr<AVPacket> packet(av_packet_alloc());
    const int index = stream.Track().index;
    std::int64_t end = 0;
    std::int64_t count = 0;
    while (packet && av_read_frame(file.Format(), packet.get()) >= 0) {
        if (packet->stream_index == index) {
            ++count;
            const std::int64_t length =
                packet->duration > 0 ? packet->duration : stream.NominalTicks();
            end = std::max(end, packet->pts == AV_NOPTS_VALUE
                                    ? count * stream.NominalTicks()
                                    : packet->pts + length - stream.StartTime());
        }
        av_packet_unref(packet.get());
    }
    return static_cast<double>(end) * stream.TickSeconds();
}

// Where the last frame ends, by decoding from shortly before the end.
double DecodedEnd(const QString& path, double guess) {
    auto opened = VideoStream::Open(path);
    if (!opened) {
        return 0;
    }
    constexpr double kFramesWithoutStamps = 5;  // seconds: far more than is between two stamps
    VideoFrameFinder finder(*std::move(opened), 0);
    const VideoStream& stream = finder.Stream();
    finder.At(stream.TicksOf(guess), {});
    const VideoFrame* last = finder.At(stream.TicksOf(guess + kFramesWithoutStamps), {}).frame;
    return last ? static_cast<double>(last->time + last->duration) * stream.TickSeconds() : 0;
}

}  // namespace

double MediaDuration(const VideoStream& stream) {
    const AVFormatContext& format = *stream.Format();
    const AVStream& track = stream.Track();
    constexpr AVRational kMicroseconds = {1, AV_TIME_BASE};
    const double ofTrack = Seconds(track.duration, track.time_base);
    double whole = Seconds(format.duration, kMicroseconds);
    if (whole <= 0) {
        return ofTrack > 0 ? ofTrack : CountedDuration(stream);
    }
    const double start = Seconds(format.start_time, kMicroseconds);
    const double end = LatestKnownEnd(format);
    const bool countsFromZero = end <= 0 || std::abs(end - whole) < std::abs(end - start - whole);
    if (start > 0 && start < whole && countsFromZero) {
        whole -= start;
    }
    if (stream.StampsAreSparse()) {  // the libraries take the last stamp for the end
        return std::max(whole, DecodedEnd(stream.Path(), whole));
    }
    return std::abs(ofTrack - whole) <= kHeaderRounding ? ofTrack : whole;
}

double TimeSlack(const VideoStream& stream, double durationSeconds) {
    const double tick = stream.TickSeconds();
    constexpr double kSinglePrecision = 1.2e-7;
    const double rounding = tick <= kLongestRoundedTick ? tick / 2 : 0;
    const double frame = static_cast<double>(stream.NominalTicks()) * tick;
    // A nanosecond is far above the error of the arithmetic in doubles.
    return std::min(rounding + durationSeconds * kSinglePrecision + 1e-9, frame / 4);
}

}  // namespace lumirra
