#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>

#include "sources/video/DamageReports.h"
#include "sources/video/MediaFile.h"

namespace lumirra {

/// A decoded frame. Times are in ticks of the track's time base, from the film's start.
struct VideoFrame {
    FfmpegPtr<AVFrame> frame;
    std::int64_t time = 0;
    std::int64_t duration = 0;  ///< nominal when the file does not say
    bool damaged = false;       ///< parts of it, or of what it builds on, are guesses
    bool first = false;         ///< nothing before it can be decoded
    /// The first time after the frame before at which a frame was lost to damage.
    std::optional<std::int64_t> lostFrom;
};

/// The video track of a file: frames in order of display from any point that the file can be
/// entered at. The film starts with the track, or with the sound when that comes first. Not
/// thread-safe; may move between threads.
class VideoStream {
  public:
    /// Succeeds for every track whose size is known, even if there is nothing to decode it with.
    static Outcome<VideoStream> Open(const QString& path);

    /// Why no frame can be decoded; nothing when there is a decoder, or none was needed yet.
    const std::optional<Failure>& DecoderProblem() const { return decoderProblem_; }
    /// The frame after the last one given; a null frame at the end (its `lostFrom` says from when
    /// on frames that the file promises are missing).
    VideoFrame Next();
    /// Goes on from a point that is probably not after `time`: the caller checks the first frame
    /// and asks for an earlier time if needed. The start of the stream is always reached.
    void Seek(std::int64_t time);
    void Rewind();
    /// Only some frames have a time stamp in the file (MPEG program streams).
    bool StampsAreSparse() const;
    bool AtBeginning() const { return fromBeginning_; }
    /// Whether seeking to `time` is better than decoding on from where the stream stands.
    bool KeyFrameAhead(std::int64_t time) const;

    const AVStream& Track() const { return *file_.Format()->streams[index_]; }
    AVFormatContext* Format() const { return file_.Format(); }
    const QString& Path() const { return file_.Path(); }
    /// Of the film, in ticks as the file counts.
    std::int64_t StartTime() const { return filmStart_; }
    double TickSeconds() const { return av_q2d(Track().time_base); }
    /// Of one frame, at least one tick.
    std::int64_t NominalTicks() const { return nominalTicks_; }
    std::int64_t TicksOf(double seconds) const;

  private:
    explicit VideoStream(MediaFile file) : file_(std::move(file)) {}

    std::optional<Failure> ChooseTrack();
    std::optional<Failure> TooLarge() const;
    std::optional<Failure> OpenDecoder();
    void StartAt(std::int64_t firstFrame);
    std::int64_t TimeOf(const AVFrame& frame) const;
    bool StampIsInDoubt(const AVFrame& frame);
    bool Feed();
    void NoteError();
    VideoFrame Take(FfmpegPtr<AVFrame> frame);
    VideoFrame AtEnd();
    void Flush();
    void Reopen();
    void DiscardOtherTracks();
    std::int64_t PromisedEnd() const;

    MediaFile file_;
    std::unique_ptr<DamageReports> reports_ = std::make_unique<DamageReports>();
    FfmpegPtr<AVCodecContext> decoder_;  // made for the first frame asked for
    FfmpegPtr<AVPacket> packet_;
    int index_ = -1;
    std::optional<Failure> decoderProblem_;
    std::optional<std::int64_t> soundStart_;  // this and the next two: ticks, as the file counts
    std::int64_t trackStart_ = 0;
    std::int64_t filmStart_ = 0;
    bool startSeen_ = false;
    std::int64_t nominalTicks_ = 1;
    bool countable_ = true;

    // since the last seek:
    std::set<std::int64_t> unseen_;  // time stamps of packets whose frames have not come
    std::optional<std::int64_t> lastTime_;
    std::int64_t lastEnd_ = 0;
    std::int64_t readTo_ = AV_NOPTS_VALUE;  // decoding time stamp of the last packet
    bool fresh_ = true;                     // nothing was read since the file was opened
    bool fromBeginning_ = true;
    bool draining_ = false;
    int stampsToConfirm_ = 0;
    int errorsInARow_ = 0;
    bool anyError_ = false;
    bool errorSinceKeyFrame_ = false;
};

}  // namespace lumirra
