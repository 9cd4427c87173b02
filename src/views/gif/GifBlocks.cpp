#include "views/gif/GifBlocks.h"

namespace lumirra {
namespace {

constexpr int kBufferBytes = 1 << 15;
constexpr int kExtension = 0x21;
constexpr int kPicture = 0x2C;
constexpr int kControlLabel = 0xF9;
constexpr int kApplicationLabel = 0xFF;

}  // namespace

GifBlocks::GifBlocks(QIODevice& file) : file_(file) {
    ReadHeader();
}

void GifBlocks::Rewind() {
    file_.seek(0);
    buffer_.clear();
    at_ = 0;
    ReadHeader();
}

void GifBlocks::ReadHeader() {
    size_ = {};
    const QByteArray version = Bytes(6);
    const int width = Word();
    const int height = Word();
    const int flags = Byte();
    if ((version == "GIF87a" || version == "GIF89a") && Skip(2) && SkipColorTable(flags)) {
        size_ = {width, height};
    }
}

std::optional<int> GifBlocks::NextDelay() {
    if (size_.isEmpty()) {
        return std::nullopt;
    }
    int delay = 0;
    for (;;) {
        const int block = Byte();
        if (block == kPicture) {
            return SkipPicture() ? std::optional(delay) : std::nullopt;
        }
        if (block != kExtension || !ReadExtension(delay)) {
            return std::nullopt;
        }
    }
}

bool GifBlocks::ReadExtension(int& delay) {
    const int label = Byte();
    const int length = Byte();
    if (length < 0) {
        return false;
    }
    const QByteArray first = Bytes(length);
    if (first.size() != length) {
        return false;
    }
    if (label == kControlLabel && length >= 3) {
        delay = static_cast<uchar>(first[1]) | static_cast<uchar>(first[2]) << 8;
    } else if (label == kApplicationLabel && (first == "NETSCAPE2.0" || first == "ANIMEXTS1.0")) {
        const int more = Byte();
        const QByteArray data = more > 0 ? Bytes(more) : QByteArray();
        if (more < 0 || data.size() != more) {
            return false;
        }
        if (more >= 3 && data[0] == 1) {
            repeats_ = static_cast<uchar>(data[1]) | static_cast<uchar>(data[2]) << 8;
        }
        return more == 0 || SkipSubBlocks();
    }
    return length == 0 || SkipSubBlocks();
}

bool GifBlocks::SkipPicture() {
    // Place and size, then the colours, then the size of the codes.
    return Skip(8) && SkipColorTable(Byte()) && Skip(1) && SkipSubBlocks();
}

bool GifBlocks::SkipColorTable(int flags) {
    return flags >= 0 && ((flags & 0x80) == 0 || Skip(3LL << ((flags & 7) + 1)));
}

bool GifBlocks::SkipSubBlocks() {
    for (int length = Byte(); length != 0; length = Byte()) {
        if (length < 0 || !Skip(length)) {
            return false;
        }
    }
    return true;
}

int GifBlocks::Byte() {
    if (at_ == buffer_.size()) {
        buffer_ = file_.read(kBufferBytes);
        at_ = 0;
        if (buffer_.isEmpty()) {
            return -1;
        }
    }
    return static_cast<uchar>(buffer_[at_++]);
}

int GifBlocks::Word() {
    const int low = Byte();
    const int high = Byte();
    return high < 0 ? -1 : low | high << 8;
}

QByteArray GifBlocks::Bytes(int count) {
    QByteArray bytes;
    for (int i = 0; i < count; ++i) {
        const int byte = Byte();
        if (byte < 0) {
            break;
        }
        bytes.append(static_cast<char>(byte));
    }
    return bytes;
}

bool GifBlocks::Skip(qint64 count) {
    for (qint64 i = 0; i < count;) {
        if (at_ == buffer_.size()) {
            if (Byte() < 0) {
                return false;
            }
            ++i;
        }
        const qint64 step = std::min<qint64>(count - i, buffer_.size() - at_);
        at_ += step;
        i += step;
    }
    return true;
}

}  // namespace lumirra
