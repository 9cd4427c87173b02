#include "imaging/files/PngEncoder.h"

#include <zlib.h>

#include <QtEndian>
#include <algorithm>
#include <memory>
#include <new>

#include "imaging/files/PixelDeflate.h"

namespace lumirra {
namespace {

constexpr char kUpFilter = 2;
constexpr std::size_t kBlockBytes = std::size_t{1} << 20;

void AppendNumber(QByteArray& file, std::uint32_t number) {
    number = qToBigEndian(number);
    file.append(reinterpret_cast<const char*>(&number), sizeof number);
}

/// A chunk's data is appended to the file itself between these two; `start` is what the first gave.
qsizetype BeginChunk(QByteArray& file, const char* type) {
    AppendNumber(file, 0);  // the length, known at the end
    const qsizetype start = file.size();
    file.append(type, 4);
    return start;
}

void EndChunk(QByteArray& file, qsizetype start) {
    const qsizetype checked = file.size() - start;
    qToBigEndian(static_cast<std::uint32_t>(checked - 4), file.data() + start - 4);
    const auto* bytes = reinterpret_cast<const Bytef*>(file.constData() + start);
    AppendNumber(file,
                 static_cast<std::uint32_t>(crc32_z(0, bytes, static_cast<z_size_t>(checked))));
}

void AppendHeader(QByteArray& file, const QImage& rgba) {
    constexpr char kEightBits = 8;
    constexpr char kTrueColorWithAlpha = 6;
    const qsizetype start = BeginChunk(file, "IHDR");
    AppendNumber(file, static_cast<std::uint32_t>(rgba.width()));
    AppendNumber(file, static_cast<std::uint32_t>(rgba.height()));
    file.append(kEightBits);
    file.append(kTrueColorWithAlpha);
    file.append(3, '\0');  // deflate, the standard filters, not interlaced
    EndChunk(file, start);
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
    const std::size_t rowBytes = 1 + static_cast<std::size_t>(rgba.width()) * 4;
    const int blockRows =
        std::clamp(static_cast<int>(kBlockBytes / rowBytes), 1, std::max(1, rgba.height()));
    const std::size_t blockBytes = rowBytes * static_cast<std::size_t>(blockRows);
    const auto rows = std::make_unique_for_overwrite<std::uint8_t[]>(blockBytes);
    QByteArray file("\x89PNG\r\n\x1a\n", 8);
    // Room for the usual picture at once; what of it is not filled is never touched.
    constexpr std::size_t kUsualBytes = std::size_t{16} << 20;
    file.reserve(static_cast<qsizetype>(
        std::min(kUsualBytes, rowBytes * static_cast<std::size_t>(rgba.height())) +
        PixelDeflate::MostBytes(blockBytes)));
    AppendHeader(file, rgba);
    PixelDeflate deflate(file);
    for (int y = 0; y < rgba.height(); y += blockRows) {
        const int count = std::min(blockRows, rgba.height() - y);
        for (int i = 0; i < count; ++i) {
            FilterRow(rgba, y + i, rows.get() + static_cast<std::size_t>(i) * rowBytes);
        }
        const qsizetype start = BeginChunk(file, "IDAT");
        deflate.Block({rows.get(), static_cast<std::size_t>(count) * rowBytes}, rgba.width(),
                      y + count == rgba.height());
        EndChunk(file, start);
    }
    EndChunk(file, BeginChunk(file, "IEND"));
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
