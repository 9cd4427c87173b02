#pragma once

#include <cstdarg>
#include <cstdint>
#include <mutex>
#include <set>

#include "sources/video/Ffmpeg.h"

namespace lumirra {

/// Which packets a decoder could not decode whole, by what it writes to its log while it does.
/// A frame's own flags do not tell with more than one thread: up to FFmpeg 6.0 the decoder's
/// threads hand a frame on while it is being decoded, and damage found after that goes unmarked or
/// not as the threads happen to run. The report is there before the frame is given out.
/// Keeps its place while a decoder refers to it.
class DamageReports {
  public:
    DamageReports() = default;
    DamageReports(const DamageReports&) = delete;
    DamageReports& operator=(const DamageReports&) = delete;
    ~DamageReports();

    /// Before the decoder is opened.
    void Attach(AVCodecContext& decoder);
    /// Before each packet is sent.
    void NextPacket(AVCodecContext& decoder);
    /// Whether the packet that the frame came from was reported, which is then forgotten.
    bool Take(const AVFrame& frame);
    /// After the decoder was flushed.
    void Clear();
    /// Takes the libraries' log from whoever has it, such as another user of them in the process.
    static void Listen();

  private:
    struct Listeners;
    static void OnLog(void* context, int level, const char* format, va_list arguments);

    std::int64_t packet_ = 0;
    std::mutex mutex_;
    std::set<std::int64_t> damaged_;  // written to by the decoder's threads
};

}  // namespace lumirra
