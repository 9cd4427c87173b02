#include "imaging/files/StillGif.h"

#include <array>
#include <cstdint>
#include <vector>

#include "imaging/files/StillPalette.h"

namespace lumirra {
namespace {

constexpr int kMaxSide = 65535;
constexpr int kClear = 256;
constexpr int kEnd = 257;
constexpr int kFirstFree = 258;
constexpr int kCodeLimit = 4096;

/// Codes of 9 to 12 bits, low bit first, in blocks of up to 255 bytes.
class CodeWriter {
  public:
    explicit CodeWriter(QByteArray& file) : file_(file) {}

    void Put(int code, int bits) {
        pending_ |= static_cast<std::uint32_t>(code) << pendingBits_;
        for (pendingBits_ += bits; pendingBits_ >= 8; pendingBits_ -= 8) {
            PutByte(static_cast<char>(pending_ & 0xFFU));
            pending_ >>= 8;
        }
    }

    void Finish() {
        if (pendingBits_ > 0) {
            PutByte(static_cast<char>(pending_));
        }
        EndBlock();
        file_.append('\0');
    }

  private:
    void PutByte(char byte) {
        block_.append(byte);
        if (block_.size() == 255) {
            EndBlock();
        }
    }

    void EndBlock() {
        if (!block_.isEmpty()) {
            file_.append(static_cast<char>(block_.size())).append(block_);
            block_.clear();
        }
    }

    QByteArray& file_;
    QByteArray block_;
    std::uint32_t pending_ = 0;
    int pendingBits_ = 0;
};

/// The codes of the strings seen so far: open addressing, string = code of its front and last byte.
class StringTable {
  public:
    StringTable() { Clear(); }

    void Clear() {
        keys_.fill(-1);
        next_ = kFirstFree;
    }

    int Next() const { return next_; }

    /// The code of the string, or -1, and then the string has been given the next code.
    int FindOrAdd(int front, std::uint8_t byte) {
        const std::int32_t key = front << 8 | byte;
        std::size_t slot = (static_cast<std::uint32_t>(key) * 2654435761U) >> 19;
        for (; keys_[slot] >= 0; slot = (slot + 1) % kSlots) {
            if (keys_[slot] == key) {
                return codes_[slot];
            }
        }
        keys_[slot] = key;
        codes_[slot] = static_cast<std::int16_t>(next_++);
        return -1;
    }

  private:
    static constexpr std::size_t kSlots = 8192;  // twice the codes, so a free slot always exists
    std::array<std::int32_t, kSlots> keys_{};
    std::array<std::int16_t, kSlots> codes_{};
    int next_ = kFirstFree;
};

void WriteLzw(const std::vector<std::uint8_t>& pixels, QByteArray& file) {
    file.append('\x08');  // bits of an index
    CodeWriter writer(file);
    StringTable table;
    int bits = 9;
    writer.Put(kClear, bits);
    int front = pixels.front();
    for (std::size_t i = 1; i < pixels.size(); ++i) {
        const int known = table.FindOrAdd(front, pixels[i]);
        if (known >= 0) {
            front = known;
            continue;
        }
        writer.Put(front, bits);
        front = pixels[i];
        // A reader learns each string one code later, so codes widen when the last code added, not
        // the next one, no longer fits.
        if (table.Next() - 1 == 1 << bits) {
            ++bits;
        }
        if (table.Next() == kCodeLimit) {
            writer.Put(kClear, bits);
            table.Clear();
            bits = 9;
        }
    }
    writer.Put(front, bits);
    if (table.Next() == 1 << bits && bits < 12) {
        ++bits;
    }
    writer.Put(kEnd, bits);
    writer.Finish();
}

void AppendNumber(QByteArray& file, int value) {
    file.append(static_cast<char>(value & 0xFF)).append(static_cast<char>(value >> 8));
}

QByteArray Header(const IndexedPicture& picture, int width, int height) {
    QByteArray file("GIF89a");
    AppendNumber(file, width);
    AppendNumber(file, height);
    file.append("\xF7\0\0", 3);  // global palette of 256 colours, background 0, square pixels
    for (const auto& color : picture.palette) {
        file.append(reinterpret_cast<const char*>(color.data()), 3);
    }
    file.append(QByteArray(768 - 3 * static_cast<qsizetype>(picture.palette.size()), '\0'));
    if (picture.hasTransparency) {
        file.append("\x21\xF9\x04\x01\0\0\xFF\0", 8);  // no delay, entry 255 is transparent
    }
    file.append("\x2C\0\0\0\0", 5);
    AppendNumber(file, width);
    AppendNumber(file, height);
    file.append('\0');
    return file;
}

}  // namespace

std::optional<QByteArray> EncodeStillGif(const QImage& rgba) {
    if (rgba.isNull() || rgba.width() > kMaxSide || rgba.height() > kMaxSide) {
        return std::nullopt;
    }
    const IndexedPicture picture = ReduceColors(rgba);
    QByteArray file = Header(picture, rgba.width(), rgba.height());
    WriteLzw(picture.pixels, file);
    file.append(';');
    return file;
}

}  // namespace lumirra
