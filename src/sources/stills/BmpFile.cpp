#include "sources/stills/BmpFile.h"

#include <QColor>
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "imaging/PictureFormat.h"
#include "sources/stills/BmpHeader.h"

namespace lumirra {
namespace {

/// One channel of a pixel that is a number, as 8 bits.
class Channel {
  public:
    Channel(std::uint32_t mask, std::uint8_t ifNone) : mask_(mask) {
        // More than 16 bits are never needed; a mask with holes is read as one number.
        shift_ = mask == 0 ? 0 : std::countr_zero(mask);
        shift_ = std::max(shift_, static_cast<int>(std::bit_width(mask)) - 16);
        const std::uint32_t most = mask_ >> shift_;
        values_.assign(std::size_t{most} + 1, ifNone);
        for (std::uint32_t value = 0; most > 0 && value <= most; ++value) {
            values_[value] = static_cast<std::uint8_t>((value * 255U + most / 2) / most);
        }
    }
    std::uint8_t Of(std::uint32_t pixel) const { return values_[(pixel & mask_) >> shift_]; }

  private:
    std::uint32_t mask_;
    int shift_ = 0;
    std::vector<std::uint8_t> values_;
};

/// The picture under construction; rows are counted as they are stored.
class Canvas {
  public:
    explicit Canvas(const BmpHeader& header)
        : image_(NewPicture({header.width, header.height}, QImage::Format_RGBA8888)),
          topDown_(header.topDown) {}

    void Fill(QRgb color) { image_.fill(QColor::fromRgba(color)); }
    uchar* Row(int row) { return image_.scanLine(topDown_ ? row : image_.height() - 1 - row); }
    int Width() const { return image_.width(); }
    int Height() const { return image_.height(); }
    QImage Take() { return std::move(image_); }

    static void Set(uchar* row, int x, QRgb color) {
        row[4 * x] = static_cast<uchar>(qRed(color));
        row[4 * x + 1] = static_cast<uchar>(qGreen(color));
        row[4 * x + 2] = static_cast<uchar>(qBlue(color));
        row[4 * x + 3] = static_cast<uchar>(qAlpha(color));
    }

  private:
    QImage image_;
    bool topDown_;
};

void UnpackIndexes(const BmpHeader& header, const QByteArray& stored, uchar* row) {
    const auto mask = static_cast<unsigned>(header.palette.size() - 1);
    for (int x = 0; x < header.width; ++x) {
        const qint64 bit = static_cast<qint64>(x) * header.bits;
        const auto byte = static_cast<uchar>(stored[static_cast<qsizetype>(bit / 8)]);
        const auto right = static_cast<int>(8 - header.bits - bit % 8);
        Canvas::Set(row, x, header.palette[(static_cast<unsigned>(byte) >> right) & mask]);
    }
}

void UnpackNumbers(const BmpHeader& header, const std::array<Channel, 4>& channels,
                   const QByteArray& stored, uchar* row) {
    const int bytes = header.bits / 8;
    const auto* from = reinterpret_cast<const uchar*>(stored.constData());
    for (int x = 0; x < header.width; ++x, from += bytes, row += 4) {
        std::uint32_t pixel = 0;
        for (int i = 0; i < bytes; ++i) {
            pixel |= static_cast<std::uint32_t>(from[i]) << (8 * i);
        }
        for (std::size_t i = 0; i < channels.size(); ++i) {
            row[i] = channels.at(i).Of(pixel);
        }
    }
}

/// Row after row; the share that the file gave.
double ReadRows(QIODevice& device, const BmpHeader& header, Canvas& canvas) {
    const qint64 used = (static_cast<qint64>(header.width) * header.bits + 7) / 8;
    const qint64 padding = (4 - used % 4) % 4;
    const std::array<Channel, 4> channels{Channel(header.masks[0], 0), Channel(header.masks[1], 0),
                                          Channel(header.masks[2], 0),
                                          Channel(header.masks[3], 255)};
    canvas.Fill(qRgba(0, 0, 0, 0));
    for (int y = 0; y < header.height; ++y) {
        const QByteArray stored = device.read(used);
        if (stored.size() < used) {
            return static_cast<double>(y) / header.height;
        }
        device.skip(padding);
        if (header.bits <= 8) {
            UnpackIndexes(header, stored, canvas.Row(y));
        } else {
            UnpackNumbers(header, channels, stored, canvas.Row(y));
        }
    }
    return 1;
}

/// A picture coded in runs of equal pixels. What no run covers has the palette's first colour.
class RunLengthReader {
  public:
    RunLengthReader(QIODevice& device, const BmpHeader& header, Canvas& canvas)
        : device_(device), header_(header), canvas_(canvas) {}

    double Read() {
        canvas_.Fill(header_.palette.empty() ? qRgb(0, 0, 0) : header_.palette.front());
        while (y_ < canvas_.Height() && Step()) {
        }
        const bool complete = ended_ || y_ >= canvas_.Height() ||
                              (y_ == canvas_.Height() - 1 && x_ >= canvas_.Width());
        return complete ? 1 : static_cast<double>(y_) / canvas_.Height();
    }

  private:
    /// The next byte; -1 at the end of the file.
    int Byte() {
        char byte = 0;
        return device_.getChar(&byte) ? static_cast<uchar>(byte) : -1;
    }

    /// One run, some pixels one by one, or a move. False at the end.
    bool Step() {
        const int count = Byte();
        const int second = count == 0 ? Byte() : 0;
        if (count < 0 || second < 0) {
            return false;
        }
        if (count > 0) {
            return Run(count);
        }
        switch (second) {
            case 0:
                x_ = 0;
                ++y_;
                return true;
            case 1:
                ended_ = true;
                return false;
            case 2:
                return Move();
            default:
                return Literal(second);
        }
    }

    bool Move() {
        const int right = Byte();
        const int down = Byte();
        x_ = std::min(x_ + std::max(right, 0), canvas_.Width());
        y_ += std::max(down, 0);
        return down >= 0;
    }

    bool Run(int count) {
        if (header_.packing == BmpHeader::Packing::RunLength24) {
            const std::optional<QRgb> color = Color();
            for (int i = 0; color && i < count; ++i) {
                Put(*color);
            }
            return color.has_value();
        }
        const int byte = Byte();
        for (int i = 0; byte >= 0 && i < count; ++i) {
            Put(Indexed(byte, i));
        }
        return byte >= 0;
    }

    bool Literal(int count) {
        int bytes = 0;
        int byte = 0;
        for (int i = 0; i < count; ++i) {
            if (header_.packing == BmpHeader::Packing::RunLength24) {
                const std::optional<QRgb> color = Color();
                if (!color) {
                    return false;
                }
                bytes += 3;
                Put(*color);
                continue;
            }
            if (header_.packing == BmpHeader::Packing::RunLength8 || i % 2 == 0) {
                byte = Byte();
                ++bytes;
            }
            if (byte < 0) {
                return false;
            }
            Put(Indexed(byte, i));
        }
        return bytes % 2 == 0 || Byte() >= 0;  // what is stored is a whole number of words
    }

    /// Two pixels are in a byte where four bits make one.
    QRgb Indexed(int byte, int number) const {
        const bool halves = header_.packing == BmpHeader::Packing::RunLength4;
        const int index = !halves ? byte : number % 2 == 0 ? byte >> 4 : byte & 15;
        return header_.palette[static_cast<std::size_t>(index)];
    }

    std::optional<QRgb> Color() {
        const int blue = Byte();
        const int green = Byte();
        const int red = Byte();
        return red < 0 ? std::nullopt : std::optional(qRgb(red, green, blue));
    }

    /// Pixels right of the picture are dropped.
    void Put(QRgb color) {
        if (x_ < canvas_.Width()) {
            Canvas::Set(canvas_.Row(y_), x_, color);
            ++x_;
        }
    }

    QIODevice& device_;
    const BmpHeader& header_;
    Canvas& canvas_;
    int x_ = 0;
    int y_ = 0;
    bool ended_ = false;
};

}  // namespace

ImageSize BmpSize(QIODevice& device) {
    const auto header = ReadBmpHeader(device);
    return header
               ? ImageSize{static_cast<double>(header->width), static_cast<double>(header->height)}
               : ImageSize{};
}

PartlyRead ReadBmp(QIODevice& device) {
    const auto header = device.seek(0) ? ReadBmpHeader(device) : std::nullopt;
    if (!header || header->pixels >= device.size() || !device.seek(header->pixels)) {
        return {};
    }
    Canvas canvas(*header);
    const double share = header->packing == BmpHeader::Packing::Plain
                             ? ReadRows(device, *header, canvas)
                             : RunLengthReader(device, *header, canvas).Read();
    return share > 0 ? PartlyRead{canvas.Take(), share} : PartlyRead{};
}

}  // namespace lumirra
