#pragma once

#include <sys/resource.h>

#include <csignal>

namespace lumirra {

/// While it lives no file of this process may become larger: a disk that is full.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit little{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &little);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit before_{};
};

}  // namespace lumirra
