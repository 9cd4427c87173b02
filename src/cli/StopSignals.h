#pragma once

#include <csignal>
#include <stop_token>
#include <thread>

namespace lumirra {

/// Turns SIGINT, SIGTERM and SIGHUP into a stop request, so that the work ends in good order; the
/// second one ends the process at once. Signals that the caller chose to ignore stay ignored. Make
/// it before any other thread, on which the signals must stay blocked.
class StopSignals {
  public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    std::stop_token Token() const { return source_.get_token(); }

  private:
    void Wait();

    sigset_t signals_{};
    std::stop_source source_;
    std::jthread waiter_;
};

}  // namespace lumirra
