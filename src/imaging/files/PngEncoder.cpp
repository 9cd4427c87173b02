#include "imaging/files/PngEncoder.h"

#include <zlib.h>

#include <QtEndian>
#include <algorithm>
#include <new>
#include <vector>

#include "imaging/files/PixelDeflate.h"

namespace lumirra {
namespace {

constexpr char kUpFilter = 2;
constexpr std::size_t kBlockBytes = std::size_t{1} << 20;

void AppendNumber(QByteArray& file, std::uint32_t number) {
    number = qToBigEndian(number);
    file.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void AppendChunk(QByteArray& file, const char* type, const QByteArray& data) {
    AppendNumber(file, static_cast<std::uint32_t>(data.size()));
    const qsizetype start = file.size();
    file.append(type, 4);
    file.append(data);
    const auto* checked = reinterpret_cast<const Bytef*>(file.constData() + start);
    AppendNumber(file, static_cast<std::uint32_t>(
                           crc32_z(0, checked, static_cast<z_size_t>(file.size() - start))));
}

QByteArray HeaderOf(const QImage& rgba) {
    constexpr char kEightBits = 8;
    constexpr char kTrueColourWithAlpha = 6;
    QByteArray header;
    AppendNumber(header, static_cast<std::uint32_t>(rgba.width()));
    AppendNumber(header, static_cast<std::uint32_t>(rgba.height()));
    header.append(kEightBits);
    header.append(kTrueColourWithAlpha);
    header.append(3, '\0');  // deflate, the standard filters, not interlaced
    return header;
}

/// The filter byte and the row less the row above it; the first row stands below zeros.
void FilterRow(const QImage& rgba, int y, std::uint8_t* out) {
    const auto bytes = static_cast<std::size_t>(rgba.width()) * 4;
    const std::uint8_t* const row = rgba.constScanLine(y);
    *out++ = kUpFilter;
    if (y == 0) {
        std::copy_n(row, bytes, out);
        return;
    }
    const std::uint8_t* const above = rgba.constScanLine(y - 1);
    for (std::size_t i = 0; i < bytes; ++i) {
        out[i] = static_cast<std::uint8_t>(row[i] - above[i]);
    }
}

QByteArray EncodeWhole(const QImage& rgba) {
    QByteArray file("\x89PNG\r\n\x1a\n", 8);
    AppendChunk(file, "IHDR", HeaderOf(rgba));
    const std::size_t rowBytes = 1 + static_cast<std::size_t>(rgba.width()) * 4;
    const int blockRows = static_cast<int>(std::max<std::size_t>(1, kBlockBytes / rowBytes));
    std::vector<std::uint8_t> rows(rowBytes *
                                   static_cast<std::size_t>(std::min(blockRows, rgba.height())));
    QByteArray stream;
    PixelDeflate deflate(stream);
    for (int y = 0; y < rgba.height(); y += blockRows) {
        const int count = std::min(blockRows, rgba.height() - y);
        for (int i = 0; i < count; ++i) {
            FilterRow(rgba, y + i, rows.data() + static_cast<std::size_t>(i) * rowBytes);
        }
        deflate.Block({rows.data(), static_cast<std::size_t>(count) * rowBytes}, rgba.width(),
                      y + count == rgba.height());
        AppendChunk(file, "IDAT", stream);
        stream.resize(0);
    }
    AppendChunk(file, "IEND", {});
    return file;
}

}  // namespace

std::optional<QByteArray> EncodePng(const QImage& rgba) {
    if (rgba.isNull()) {
        return std::nullopt;
    }
    try {
        return EncodeWhole(rgba);
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

}  // namespace lumirra
