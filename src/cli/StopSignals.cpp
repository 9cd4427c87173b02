#include "cli/StopSignals.h"

#include <unistd.h>

namespace lumirra {
namespace {

bool IsIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

StopSignals::StopSignals() {
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGRTMIN);  // wakes the waiter at the end
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (!IsIgnored(signal)) {
            sigaddset(&signals_, signal);
        }
    }
    // A reader of our output that goes away must not cost the clean-up.
    std::signal(SIGPIPE, SIG_IGN);
    pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
    waiter_ = std::jthread([this] { Wait(); });
}

StopSignals::~StopSignals() {
    pthread_kill(waiter_.native_handle(), SIGRTMIN);
}

void StopSignals::Wait() {
    for (;;) {
        const int signal = sigwaitinfo(&signals_, nullptr);
        if (signal == SIGRTMIN) {
            return;
        }
        if (signal > 0 && !source_.request_stop()) {
            _exit(1);
        }
    }
}

}  // namespace lumirra
