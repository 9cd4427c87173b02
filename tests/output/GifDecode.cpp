#include "output/GifDecode.h"

#include <QFile>
#include <QProcess>
#include <cstring>

namespace lumirra::test {

namespace {

class Reader {
  public:
    explicit Reader(const QByteArray& bytes) : bytes_(bytes) {}

    bool Good() const { return good_; }
    int Byte() {
        if (at_ >= bytes_.size()) {
            good_ = false;
            return 0;
        }
        return static_cast<unsigned char>(bytes_[at_++]);
    }
    int Word() {
        const int low = Byte();
        return low | Byte() << 8;
    }
    QByteArray Take(int count) {
        if (at_ + count > bytes_.size()) {
            good_ = false;
            return {};
        }
        at_ += count;
        return bytes_.mid(at_ - count, count);
    }
    /// Length-prefixed blocks up to the empty one.
    QByteArray Blocks() {
        QByteArray all;
        for (int length = Byte(); good_ && length > 0; length = Byte()) {
            all += Take(length);
        }
        return all;
    }
    bool AtEnd() const { return at_ == bytes_.size(); }

  private:
    const QByteArray& bytes_;
    qsizetype at_ = 0;
    bool good_ = true;
};

std::vector<std::uint8_t> Unpack(const QByteArray& data, int size) {
    const int clear = 1 << size;
    std::vector<std::vector<std::uint8_t>> table;
    std::vector<std::uint8_t> out;
    int width = size + 1;
    int previous = -1;
    int bit = 0;
    const auto restart = [&] {
        table.assign(static_cast<std::size_t>(clear) + 2, {});
        for (int i = 0; i < clear; ++i) {
            table[static_cast<std::size_t>(i)] = {static_cast<std::uint8_t>(i)};
        }
        width = size + 1;
        previous = -1;
    };
    restart();
    for (;;) {
        if (bit + width > data.size() * 8) {
            return {};
        }
        int code = 0;
        for (int i = 0; i < width; ++i, ++bit) {
            code |= (data[bit / 8] >> (bit % 8) & 1) << i;
        }
        if (code == clear) {
            restart();
            continue;
        }
        if (code == clear + 1) {
            return (data.size() * 8 - bit) < 8 ? out : std::vector<std::uint8_t>{};
        }
        const int known = static_cast<int>(table.size());
        if (code > known || (code == known && previous < 0)) {
            return {};
        }
        std::vector<std::uint8_t> string;
        if (code < known) {
            string = table[static_cast<std::size_t>(code)];
        } else {
            string = table[static_cast<std::size_t>(previous)];
            string.push_back(string.front());
        }
        if (previous >= 0 && known < 4096) {
            std::vector<std::uint8_t> learned = table[static_cast<std::size_t>(previous)];
            learned.push_back(string.front());
            table.push_back(std::move(learned));
            if (static_cast<int>(table.size()) == 1 << width && width < 12) {
                ++width;
            }
        }
        out.insert(out.end(), string.begin(), string.end());
        previous = code;
    }
}

struct Pending {
    int delay = 0;
    int disposal = 0;
    int transparent = -1;
};

bool ReadExtension(Reader& in, Pending& pending, GifContents& gif) {
    const int label = in.Byte();
    const QByteArray data = in.Blocks();
    if (label == 0xF9 && data.size() == 4) {
        pending.disposal = data[0] >> 2 & 7;
        pending.delay = static_cast<unsigned char>(data[1]) | static_cast<unsigned char>(data[2])
                                                                  << 8;
        pending.transparent = (data[0] & 1) != 0 ? static_cast<unsigned char>(data[3]) : -1;
        return true;
    }
    if (label == 0xFF && data.startsWith("NETSCAPE2.0\x01") && data.size() == 14) {
        gif.loops = static_cast<unsigned char>(data[12]) | static_cast<unsigned char>(data[13])
                                                               << 8;
        return true;
    }
    return false;
}

bool ReadImage(Reader& in, const QByteArray& fileTable, const Pending& pending, QImage& screen,
               GifContents& gif) {
    const int left = in.Word();
    const int top = in.Word();
    GifImage image;
    image.width = in.Word();
    image.height = in.Word();
    image.delay = pending.delay;
    image.disposal = pending.disposal;
    const int flags = in.Byte();
    const QByteArray table = (flags & 0x80) != 0 ? in.Take(3 << ((flags & 7) + 1)) : fileTable;
    const int size = in.Byte();
    const std::vector<std::uint8_t> indices = Unpack(in.Blocks(), size);
    if (!in.Good() || left + image.width > gif.width || top + image.height > gif.height ||
        static_cast<long long>(indices.size()) !=
            static_cast<long long>(image.width) * image.height) {
        return false;
    }
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const int index = indices[i];
        if (index == pending.transparent) {
            continue;
        }
        if (3 * index + 2 >= table.size()) {
            return false;
        }
        const int x = left + static_cast<int>(i) % image.width;
        const int y = top + static_cast<int>(i) / image.width;
        uchar* pixel = screen.scanLine(y) + std::ptrdiff_t{4} * x;
        std::memcpy(pixel, table.constData() + std::ptrdiff_t{3} * index, 3);
        pixel[3] = 255;
    }
    image.canvas = screen.copy();
    gif.images.push_back(image);
    if (image.disposal == 2) {
        screen.fill(0);
    }
    return true;
}

}  // namespace

GifContents ParseGif(const QByteArray& bytes) {
    GifContents gif;
    Reader in(bytes);
    if (in.Take(6) != "GIF89a") {
        return gif;
    }
    gif.width = in.Word();
    gif.height = in.Word();
    const int flags = in.Byte();
    in.Take(2);
    const QByteArray table = (flags & 0x80) != 0 ? in.Take(3 << ((flags & 7) + 1)) : QByteArray();
    QImage screen(gif.width, gif.height, QImage::Format_RGBA8888);
    screen.fill(0);
    Pending pending;
    while (in.Good()) {
        const int introducer = in.Byte();
        if (introducer == 0x3B) {
            gif.valid = in.Good() && in.AtEnd();
            return gif;
        }
        if (introducer == 0x21) {
            if (!ReadExtension(in, pending, gif)) {
                return gif;
            }
        } else if (introducer != 0x2C || !ReadImage(in, table, pending, screen, gif)) {
            return gif;
        }
    }
    return gif;
}

GifContents ParseGifFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? ParseGif(file.readAll()) : GifContents{};
}

std::vector<std::uint8_t> UnpackCodes(const std::vector<std::uint8_t>& data) {
    const QByteArray bytes(reinterpret_cast<const char*>(data.data()),
                           static_cast<qsizetype>(data.size()));
    Reader in(bytes);
    const int size = in.Byte();
    const QByteArray codes = in.Blocks();
    return in.Good() && in.AtEnd() ? Unpack(codes, size) : std::vector<std::uint8_t>{};
}

ForeignFrames DecodeByFfmpeg(const QString& path, int width, int height) {
    QProcess process;
    process.start(QStringLiteral("ffmpeg"),
                  {QStringLiteral("-v"), QStringLiteral("warning"), QStringLiteral("-i"), path,
                   QStringLiteral("-fps_mode"), QStringLiteral("passthrough"), QStringLiteral("-f"),
                   QStringLiteral("rawvideo"), QStringLiteral("-pix_fmt"), QStringLiteral("rgba"),
                   QStringLiteral("-")});
    ForeignFrames result;
    if (!process.waitForFinished(60000)) {
        result.complaints = "ffmpeg did not run";
        return result;
    }
    const QByteArray raw = process.readAllStandardOutput();
    // What ffmpeg says of the raw pictures it writes is not the GIF's fault.
    for (const QByteArray& line : process.readAllStandardError().split('\n')) {
        if (line.contains("gif") || line.contains("rror") || line.contains("nvalid")) {
            result.complaints += line;
        }
    }
    const qsizetype size = qsizetype{4} * width * height;
    for (qsizetype at = 0; at + size <= raw.size(); at += size) {
        QImage frame(width, height, QImage::Format_RGBA8888);
        for (int y = 0; y < height; ++y) {
            std::memcpy(frame.scanLine(y), raw.constData() + at + qsizetype{4} * width * y,
                        static_cast<std::size_t>(width) * 4);
        }
        result.frames.push_back(frame);
    }
    return result;
}

QByteArray RunProgram(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    return process.waitForFinished(60000) ? process.readAll() : QByteArray("(not run)");
}

}  // namespace lumirra::test
