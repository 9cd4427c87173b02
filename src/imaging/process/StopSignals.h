#pragma once

#include <signal.h>

#include <array>
#include <stop_token>
#include <thread>

#include "imaging/files/Descriptor.h"

namespace lumirra {

/// Turns SIGINT, SIGTERM and SIGHUP into a stop request, so that the work ends in good order; the
/// second one ends the process at once (`EndAtOnce`). Writing to a reader that went away, or beyond
/// the size that files may have, is an error of that write alone. What the caller chose to ignore
/// stays ignored, and programs that this one starts find all signals as they were. One at a time,
/// for a program's `main`.
class StopSignals {
  public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    std::stop_token Token() const { return source_.get_token(); }

    /// Takes the signals that came where no thread could be had to wait for them, else does
    /// nothing; to be called now and then on the main thread.
    void Poll();

  private:
    void Wait();
    void Take();

    static constexpr std::array kStops{SIGINT, SIGTERM, SIGHUP};
    static constexpr std::array kWriteErrors{SIGPIPE, SIGXFSZ};
    Descriptor signals_;
    Descriptor noted_;  ///< where the handler notes them
    std::stop_source source_;
    std::jthread waiter_;
};

}  // namespace lumirra
