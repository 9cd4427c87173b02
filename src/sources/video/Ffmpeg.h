#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <cerrno>
#include <memory>
#include <new>

namespace lumirra {

/// Owners for what the media libraries hand out as raw pointers.
struct FfmpegDeleter {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(SwsContext* context) const { sws_freeContext(context); }
    void operator()(AVIOContext* context) const {
        av_freep(&context->buffer);
        avio_context_free(&context);
    }
};

/// Turns off the libraries' own log output; errors are reported by our messages.
/// Call before anything is read.
inline void SilenceLibraries() {
    av_log_set_level(AV_LOG_QUIET);
}

/// Whether a call of the libraries did what it was asked for. Throws std::bad_alloc where it did
/// not for want of memory.
inline bool Succeeded(int result) {
    if (result == AVERROR(ENOMEM)) {
        throw std::bad_alloc();
    }
    return result >= 0;
}

template <typename T>
using FfmpegPtr = std::unique_ptr<T, FfmpegDeleter>;

}  // namespace lumirra
