#include "sources/video/VideoStream.h"

#include <algorithm>
#include <cmath>

#include "imaging/PixelLimits.h"
#include "imaging/Words.h"

namespace lumirra {

namespace {

// Skipping ahead pays when it saves more decoding than it costs to start anew.
constexpr int kFramesWorthSeeking = 6;
constexpr double kSecondsWorthSeeking = 10;
// Against a decoder that does nothing but complain.
constexpr int kErrorsInARow = 100'000;

bool IsVideoTrack(const AVStream& stream) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
           (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) == 0;
}

bool IsSoundTrack(const AVStream& stream) {
    return stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

bool IsDefault(const AVStream& stream) {
    return (stream.disposition & AV_DISPOSITION_DEFAULT) != 0;
}

AVRational FrameRate(const AVStream& stream) {
    return stream.avg_frame_rate.num > 0 && stream.avg_frame_rate.den > 0 ? stream.avg_frame_rate
                                                                          : stream.r_frame_rate;
}

std::optional<std::int64_t> SoundStart(const AVFormatContext& format, AVRational timeBase) {
    std::optional<std::int64_t> earliest;
    for (unsigned i = 0; i < format.nb_streams; ++i) {
        const AVStream& stream = *format.streams[i];
        if (IsSoundTrack(stream) && stream.start_time != AV_NOPTS_VALUE) {
            const std::int64_t start = av_rescale_q(stream.start_time, stream.time_base, timeBase);
            earliest = std::min(start, earliest.value_or(start));
        }
    }
    return earliest;
}

}  // namespace

Outcome<VideoStream> VideoStream::Open(const QString& path) try {
    auto file = MediaFile::Open(path);
    if (!file) {
        return file.failure();
    }
    if (file->IsPicture()) {
        return FileFailure(Failure::Kind::Unsupported, path,
                           QStringLiteral("is a picture, not a video."));
    }
    VideoStream stream(*std::move(file));
    if (auto failure = stream.TooLarge()) {
        return *std::move(failure);  // asked before the libraries look into it and forget the size
    }
    if (!stream.file_.FindStreams()) {
        return FileFailure(Failure::Kind::Unreadable, path,
                           QStringLiteral("is not a video, or it is damaged."));
    }
    if (auto failure = stream.ChooseTrack()) {
        return *std::move(failure);
    }
    if (auto failure = stream.TooLarge()) {
        return *std::move(failure);
    }
    if (stream.Track().codecpar->width <= 0 || stream.Track().codecpar->height <= 0) {
        return FileFailure(Failure::Kind::Unreadable, path,
                           QStringLiteral("is not a video, or it is damaged."));
    }
    return stream;
} catch (const std::bad_alloc&) {
    return NoMemoryFor(path);
}

std::optional<Failure> VideoStream::ChooseTrack() {
    bool sound = false;
    for (unsigned i = 0; i < Format()->nb_streams; ++i) {
        const AVStream& stream = *Format()->streams[i];
        sound = sound || IsSoundTrack(stream);
        if (IsVideoTrack(stream) && (index_ < 0 || (IsDefault(stream) && !IsDefault(Track())))) {
            index_ = static_cast<int>(i);
        }
    }
    if (index_ < 0) {
        return FileFailure(Failure::Kind::Unsupported, Path(),
                           sound ? QStringLiteral("has no video in it, only sound.")
                                 : QStringLiteral("has no video in it."));
    }
    DiscardOtherTracks();
    // Without time stamps of its own a file can only be counted through from the beginning.
    countable_ = (Format()->iformat->flags & AVFMT_NOTIMESTAMPS) == 0;
    const AVStream& track = Track();
    const AVRational rate = FrameRate(track);
    if (rate.num > 0 && rate.den > 0) {
        nominalTicks_ = std::max<std::int64_t>(1, av_rescale_q(1, av_inv_q(rate), track.time_base));
    }
    soundStart_ = SoundStart(*Format(), track.time_base);
    StartAt(track.start_time == AV_NOPTS_VALUE ? 0 : track.start_time);
    return std::nullopt;
}

// The first picture stands from the start of the film, however late it comes.
void VideoStream::StartAt(std::int64_t firstFrame) {
    trackStart_ = firstFrame;
    filmStart_ = firstFrame;
    const AVRational toSeconds = {1, AV_TIME_BASE};
    const std::int64_t whole = Format()->duration;
    const std::int64_t longest = whole > 0 ? av_rescale_q(whole, toSeconds, Track().time_base) : 0;
    // A lead longer than the film is an error in the file.
    if (soundStart_ && *soundStart_ < firstFrame && firstFrame - *soundStart_ < longest) {
        filmStart_ = *soundStart_;
    }
}

std::optional<Failure> VideoStream::TooLarge() const {
    for (unsigned i = 0; i < Format()->nb_streams; ++i) {
        const AVCodecParameters& parameters = *Format()->streams[i]->codecpar;
        if (IsVideoTrack(*Format()->streams[i]) &&
            static_cast<long long>(parameters.width) * parameters.height > kMaxSourcePixels) {
            return FileFailure(
                Failure::Kind::TooLarge, Path(),
                Filled(QStringLiteral("is too large: %1 x %2 pixels; at most %3 "
                                      "million can be read."),
                       parameters.width, parameters.height, kMaxSourcePixels / 1'000'000));
        }
    }
    return std::nullopt;
}

std::optional<Failure> VideoStream::OpenDecoder() {
    const AVCodecParameters& parameters = *Track().codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (!codec) {
        return FileFailure(Failure::Kind::Unsupported, Path(),
                           QStringLiteral("holds video of a kind that cannot be decoded (%1).")
                               .arg(QLatin1String(avcodec_get_name(parameters.codec_id))));
    }
    packet_.reset(av_packet_alloc());
    if (!packet_) {
        throw std::bad_alloc();
    }
    constexpr int kOneForEachCore = 0;
    for (const int threads : {kOneForEachCore, 1}) {  // the system may have no thread left
        FfmpegPtr<AVCodecContext> decoder(avcodec_alloc_context3(codec));
        if (!decoder || avcodec_parameters_to_context(decoder.get(), &parameters) < 0) {
            throw std::bad_alloc();
        }
        decoder->pkt_timebase = Track().time_base;
        decoder->max_pixels = kMaxSourcePixels;
        decoder->thread_count = threads;
        reports_->Attach(*decoder);
        const int opened = avcodec_open2(decoder.get(), codec, nullptr);
        if (opened >= 0 || (threads == 1 && Succeeded(opened))) {
            decoder_ = std::move(decoder);
            return std::nullopt;
        }
    }
    return FileFailure(
        Failure::Kind::Unsupported, Path(),
        QStringLiteral("holds video that cannot be decoded (%1).").arg(QLatin1String(codec->name)));
}

std::int64_t VideoStream::TicksOf(double seconds) const {
    const double ticks = std::floor(seconds / TickSeconds());
    constexpr double kFar = 9e18;
    return static_cast<std::int64_t>(std::clamp(ticks, -kFar, kFar));
}

VideoFrame VideoStream::Next() {
    if (!decoder_ && !decoderProblem_) {
        decoderProblem_ = OpenDecoder();
    }
    FfmpegPtr<AVFrame> frame(av_frame_alloc());
    if (!frame) {
        throw std::bad_alloc();
    }
    while (decoder_) {
        const int result = avcodec_receive_frame(decoder_.get(), frame.get());
        if (result == 0) {
            errorsInARow_ = 0;
            if (StampIsInDoubt(*frame)) {
                continue;
            }
            return Take(std::move(frame));
        }
        if (result == AVERROR(EAGAIN) && !draining_) {
            Feed();
        } else if (result == AVERROR_EOF || result == AVERROR(EAGAIN)) {
            break;
        } else {
            Succeeded(result);
            NoteError();  // the frames after this one may still come
            if (++errorsInARow_ > kErrorsInARow) {
                break;
            }
        }
    }
    return AtEnd();
}

// One packet of the track, or the end of the file, to the decoder.
bool VideoStream::Feed() {
    fresh_ = false;
    for (;;) {
        const int read = av_read_frame(Format(), packet_.get());
        if (read < 0) {
            Succeeded(read);
            anyError_ = anyError_ || read != AVERROR_EOF;
            draining_ = true;
            return avcodec_send_packet(decoder_.get(), nullptr) >= 0;
        }
        if (packet_->stream_index == index_) {
            break;
        }
        av_packet_unref(packet_.get());
    }
    if (packet_->dts != AV_NOPTS_VALUE) {
        readTo_ = packet_->dts;
    }
    if (packet_->pts != AV_NOPTS_VALUE && (packet_->flags & AV_PKT_FLAG_DISCARD) == 0) {
        unseen_.insert(packet_->pts);
    }
    if ((packet_->flags & AV_PKT_FLAG_CORRUPT) != 0) {
        NoteError();
    }
    reports_->NextPacket(*decoder_);
    const int sent = avcodec_send_packet(decoder_.get(), packet_.get());
    av_packet_unref(packet_.get());
    if (!Succeeded(sent)) {
        NoteError();
    }
    return sent >= 0;
}

void VideoStream::NoteError() {
    anyError_ = true;
    errorSinceKeyFrame_ = true;
}

bool VideoStream::StampsAreSparse() const {
    return QLatin1String(Format()->iformat->name) == QLatin1String("mpeg");
}

// Entered in the middle of a frame, a program stream's first stamp goes to a wrong frame, and the
// frames up to the next stamp are counted from it. Frames with a stamp of their own have a place.
bool VideoStream::StampIsInDoubt(const AVFrame& frame) {
    if (stampsToConfirm_ > 0 && frame.pkt_pos >= 0) {
        --stampsToConfirm_;
    }
    return stampsToConfirm_ > 0;
}

std::int64_t VideoStream::TimeOf(const AVFrame& frame) const {
    if (frame.best_effort_timestamp != AV_NOPTS_VALUE) {
        return frame.best_effort_timestamp;
    }
    return lastTime_ ? *lastTime_ + nominalTicks_ : trackStart_;
}

VideoFrame VideoStream::Take(FfmpegPtr<AVFrame> frame) {
    VideoFrame result;
    const std::int64_t time = TimeOf(*frame);
    if (!startSeen_ && fromBeginning_ && !anyError_) {
        StartAt(time);  // some containers stamp the track's start with decoding time
    }
    startSeen_ = true;
    result.time = time - filmStart_;
    result.first = fromBeginning_ && !lastTime_;
    result.duration = frame->pkt_duration > 0 ? frame->pkt_duration : nominalTicks_;
    const bool reported = reports_->Take(*frame);
    const bool ownDamage =
        reported || frame->decode_error_flags != 0 || (frame->flags & AV_FRAME_FLAG_CORRUPT) != 0;
    if (ownDamage) {
        anyError_ = true;
    }
    errorSinceKeyFrame_ = ownDamage || (errorSinceKeyFrame_ && frame->key_frame == 0);
    result.damaged = errorSinceKeyFrame_;

    // A packet may rightly bring no frame (hidden frames, second fields, "same as before"); only
    // where the decoder complained does one without a frame count as lost.
    unseen_.erase(frame->pts == AV_NOPTS_VALUE ? time : frame->pts);
    const auto passed = unseen_.lower_bound(time);
    if (anyError_ && unseen_.begin() != passed) {
        result.lostFrom = *unseen_.begin() - filmStart_;
    }
    unseen_.erase(unseen_.begin(), passed);
    lastTime_ = time;
    lastEnd_ = result.time + result.duration;
    result.frame = std::move(frame);
    return result;
}

VideoFrame VideoStream::AtEnd() {
    VideoFrame result;
    if (anyError_ && !unseen_.empty()) {
        result.lostFrom = *unseen_.begin() - filmStart_;
    }
    // A file cut short still promises its full length.
    const std::int64_t promised = PromisedEnd() + trackStart_ - filmStart_;
    if (promised - lastEnd_ > nominalTicks_ + nominalTicks_ / 2) {
        result.lostFrom = result.lostFrom ? std::min(*result.lostFrom, lastEnd_) : lastEnd_;
    }
    return result;
}

// The end of the track by the file's own word, 0 when it gives none.
std::int64_t VideoStream::PromisedEnd() const {
    const AVFormatContext& format = *file_.Format();
    if (format.duration_estimation_method == AVFMT_DURATION_FROM_BITRATE) {
        return 0;  // a guess
    }
    if (Track().duration != AV_NOPTS_VALUE && Track().duration > 0) {
        return Track().duration;
    }
    if (format.nb_streams != 1 || format.duration == AV_NOPTS_VALUE) {
        return 0;
    }
    // Some containers count the time before the first frame in, some do not: the shorter reading.
    const std::int64_t before = format.start_time == AV_NOPTS_VALUE ? 0 : format.start_time;
    return av_rescale_q(format.duration - std::max<std::int64_t>(before, 0), {1, AV_TIME_BASE},
                        Track().time_base);
}

void VideoStream::Flush() {
    if (decoder_) {
        avcodec_flush_buffers(decoder_.get());
        DamageReports::Listen();
    }
    reports_->Clear();
    unseen_.clear();
    lastTime_.reset();
    lastEnd_ = 0;
    readTo_ = AV_NOPTS_VALUE;
    stampsToConfirm_ = 0;
    draining_ = false;
    anyError_ = false;
    errorSinceKeyFrame_ = false;
}

void VideoStream::Seek(std::int64_t time) {
    if (filmStart_ + time <= trackStart_ || !countable_) {
        Rewind();
        return;
    }
    fresh_ = false;
    if (av_seek_frame(Format(), index_, filmStart_ + time, AVSEEK_FLAG_BACKWARD) < 0) {
        Rewind();
        return;
    }
    Flush();
    fromBeginning_ = false;
    stampsToConfirm_ = StampsAreSparse() ? 2 : 0;
}

void VideoStream::Rewind() {
    if (fresh_) {
        return;  // what comes with the first packet alone, such as a palette, must not be lost
    }
    const std::int64_t early = trackStart_ - TicksOf(1) - 1;
    if (!countable_ || av_seek_frame(Format(), index_, early, AVSEEK_FLAG_BACKWARD) < 0) {
        Reopen();
    }
    Flush();
    fromBeginning_ = true;
}

// The way back that works for every container.
void VideoStream::Reopen() {
    auto opened = MediaFile::Open(Path());
    if (!opened) {
        return;
    }
    MediaFile file = *std::move(opened);
    if (file.FindStreams() && index_ < static_cast<int>(file.Format()->nb_streams) &&
        file.Format()->streams[index_]->codecpar->codec_id == Track().codecpar->codec_id) {
        file_ = std::move(file);
        DiscardOtherTracks();
    }
}

void VideoStream::DiscardOtherTracks() {
    for (unsigned i = 0; i < Format()->nb_streams; ++i) {
        if (static_cast<int>(i) != index_) {
            Format()->streams[i]->discard = AVDISCARD_ALL;
        }
    }
}

bool VideoStream::KeyFrameAhead(std::int64_t time) const {
    if (draining_ || readTo_ == AV_NOPTS_VALUE) {
        return false;
    }
    AVStream* track = file_.Format()->streams[index_];
    const std::int64_t wanted = filmStart_ + time;
    const int count = avformat_index_get_entries_count(track);
    const AVIndexEntry* last = count > 0 ? avformat_index_get_entry(track, count - 1) : nullptr;
    if (last && last->timestamp >= wanted) {
        const AVIndexEntry* key =
            avformat_index_get_entry_from_timestamp(track, wanted, AVSEEK_FLAG_BACKWARD);
        return key && key->timestamp > readTo_ + kFramesWorthSeeking * nominalTicks_;
    }
    return wanted > readTo_ &&
           static_cast<double>(wanted - readTo_) * TickSeconds() > kSecondsWorthSeeking;
}

}  // namespace lumirra
