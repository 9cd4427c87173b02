#pragma once

#include <cstdint>
#include <vector>

namespace lumirra::gif {

/// Packs codes of varying width, lowest bits first, into the length-prefixed blocks of GIF image
/// data.
class LzwCodeWriter {
  public:
    explicit LzwCodeWriter(std::vector<std::uint8_t>& out) : out_(out) { OpenBlock(); }

    void Put(unsigned code, int width) {
        bits_ |= static_cast<std::uint64_t>(code) << count_;
        count_ += width;
        while (count_ >= 8) {
            PutByte(static_cast<std::uint8_t>(bits_ & 0xFFU));
            bits_ >>= 8;
            count_ -= 8;
        }
    }

    /// Writes what is left and the terminating empty block. Nothing may follow.
    void Finish() {
        if (count_ > 0) {
            PutByte(static_cast<std::uint8_t>(bits_ & 0xFFU));
        }
        if (Length() == 0) {
            return;  // the open block is the terminator
        }
        CloseBlock();
        out_.push_back(0);
    }

  private:
    static constexpr std::size_t kBlockLimit = 255;

    void OpenBlock() {
        start_ = out_.size();
        out_.push_back(0);
    }
    std::size_t Length() const { return out_.size() - start_ - 1; }
    void CloseBlock() { out_[start_] = static_cast<std::uint8_t>(Length()); }
    void PutByte(std::uint8_t byte) {
        out_.push_back(byte);
        if (Length() == kBlockLimit) {
            CloseBlock();
            OpenBlock();
        }
    }

    std::vector<std::uint8_t>& out_;
    std::size_t start_ = 0;
    std::uint64_t bits_ = 0;
    int count_ = 0;
};

}  // namespace lumirra::gif
