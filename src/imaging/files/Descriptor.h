#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace lumirra {

/// Owns an open file descriptor.
class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { static_cast<void>(Close()); }

    bool IsOpen() const { return number_ >= 0; }
    int Get() const { return number_; }
    /// Gives it to somebody else to close.
    int Release() { return std::exchange(number_, -1); }
    /// 0, or the system's error number: some file systems tell only now that a write failed.
    int Close() {
        const int number = Release();
        return number >= 0 && ::close(number) != 0 ? errno : 0;
    }

  private:
    int number_;
};

}  // namespace lumirra
