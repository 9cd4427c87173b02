#include "imaging/process/StopSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <system_error>

#include "imaging/process/SuddenEnd.h"

namespace lumirra {
namespace {

constexpr char kEnd = 0;
constexpr char kSignal = 1;

// All that a handler may do is to write; where to, it can know from here alone.
std::atomic<int> noteTo = -1;

void Note(int /*signal*/) {
    const int error = errno;
    // A full pipe holds more signals than anybody has to hear of.
    static_cast<void>(!::write(noteTo, &kSignal, 1));
    errno = error;
}

/// Unlike ignoring it, this does not reach the programs that we start.
void LetTheCallFail(int /*signal*/) {}

void Handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) {
        return;
    }
    action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

}  // namespace

StopSignals::StopSignals() {
    for (const int signal : kWriteErrors) {
        Handle(signal, LetTheCallFail);
    }
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return;  // the signals end the process, as they always did
    }
    signals_ = Descriptor(ends[0]);
    noted_ = Descriptor(ends[1]);
    ::fcntl(noted_.Get(), F_SETFL, O_NONBLOCK);
    noteTo = noted_.Get();
    try {
        waiter_ = std::jthread([this] { Wait(); });
    } catch (const std::system_error&) {
        ::fcntl(signals_.Get(), F_SETFL, O_NONBLOCK);
    }
    for (const int signal : kStops) {
        Handle(signal, Note);
    }
}

StopSignals::~StopSignals() {
    if (waiter_.joinable()) {
        static_cast<void>(!::write(noted_.Get(), &kEnd, 1));
        waiter_.join();
    }
    for (const int signal : kStops) {
        Handle(signal, LetTheCallFail);  // the process is about to end in any case
    }
    noteTo = -1;
}

void StopSignals::Wait() {
    char what = kEnd;
    for (;;) {
        const ssize_t got = ::read(signals_.Get(), &what, 1);
        if (got == 1 && what == kSignal) {
            Take();
        } else if (got >= 0 || errno != EINTR) {
            return;
        }
    }
}

void StopSignals::Take() {
    if (!source_.request_stop()) {
        EndAtOnce();
    }
}

void StopSignals::Poll() {
    char what = kEnd;
    while (!waiter_.joinable() && signals_.IsOpen() && ::read(signals_.Get(), &what, 1) == 1) {
        Take();
    }
}

}  // namespace lumirra
