#include "sources/video/DeepTiff.h"

#include <tiffio.h>

#include <QRgba64>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "imaging/PictureFormat.h"

namespace lumirra {
namespace {

tmsize_t Read(thandle_t handle, void* target, tmsize_t size) {
    return static_cast<QIODevice*>(handle)->read(static_cast<char*>(target), size);
}
tmsize_t RefuseWrite(thandle_t /*handle*/, void* /*bytes*/, tmsize_t /*size*/) {
    return -1;
}
toff_t Seek(thandle_t handle, toff_t offset, int whence) {
    auto& device = *static_cast<QIODevice*>(handle);
    const auto by = static_cast<qint64>(offset);
    const qint64 from = whence == SEEK_CUR ? device.pos() : whence == SEEK_END ? device.size() : 0;
    return device.seek(from + by) ? static_cast<toff_t>(device.pos()) : static_cast<toff_t>(-1);
}
int KeepOpen(thandle_t /*handle*/) {
    return 0;
}
toff_t Size(thandle_t handle) {
    return static_cast<toff_t>(static_cast<QIODevice*>(handle)->size());
}

using Tiff = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

Tiff Opened(QIODevice& device) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    device.seek(0);
    return {TIFFClientOpen("", "rm", &device, Read, RefuseWrite, Seek, KeepOpen, Size, nullptr,
                           nullptr),
            TIFFClose};
}

struct Shape {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint16_t samples = 1;  ///< of a pixel
    std::uint16_t format = SAMPLEFORMAT_UINT;
    bool separate = false;  ///< each channel has rows of its own
    bool grey = false;
    bool inverted = false;
    bool alpha = false;
    bool premultiplied = false;
};

std::optional<Shape> ShapeOf(TIFF* tiff) {
    std::uint16_t bits = 0;
    std::uint16_t planes = PLANARCONFIG_CONTIG;
    std::uint16_t meaning = 0;
    std::uint16_t extras = 0;
    const std::uint16_t* kinds = nullptr;
    Shape shape;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &bits);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &shape.samples);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &shape.format);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &planes);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extras, &kinds);
    if (bits != 64 || TIFFIsTiled(tiff) != 0 ||
        TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &shape.width) != 1 ||
        TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &shape.height) != 1 ||
        TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &meaning) != 1) {
        return std::nullopt;
    }
    constexpr std::uint32_t kMost = std::numeric_limits<int>::max();
    shape.separate = planes == PLANARCONFIG_SEPARATE;
    shape.inverted = meaning == PHOTOMETRIC_MINISWHITE;
    shape.grey = shape.inverted || meaning == PHOTOMETRIC_MINISBLACK;
    const int colors = shape.grey ? 1 : 3;
    shape.alpha = extras > 0 && shape.samples > colors;
    shape.premultiplied = shape.alpha && kinds[0] == EXTRASAMPLE_ASSOCALPHA;
    const bool known = (shape.grey || meaning == PHOTOMETRIC_RGB) && shape.samples >= colors &&
                       shape.samples <= 8 && shape.width >= 1 && shape.height >= 1 &&
                       shape.width <= kMost && shape.height <= kMost;
    return known ? std::optional(shape) : std::nullopt;
}

/// A stored number as 16 bits.
quint16 Level(std::uint64_t bits, std::uint16_t format) {
    double part = 0;
    if (format == SAMPLEFORMAT_IEEEFP) {
        std::memcpy(&part, &bits, sizeof(part));
    } else if (format == SAMPLEFORMAT_INT) {
        part = static_cast<double>(static_cast<std::int64_t>(bits)) / 0x1p63;
    } else {
        part = static_cast<double>(bits) / 0x1p64;
    }
    return static_cast<quint16>(std::lround(part > 0 ? std::min(part, 1.0) * 65535 : 0));
}

/// One row of all samples, pixel by pixel, whichever way they are stored.
bool ReadRow(TIFF* tiff, const Shape& shape, std::uint32_t y, std::vector<std::uint64_t>& row) {
    if (!shape.separate) {
        return TIFFReadScanline(tiff, row.data(), y, 0) == 1;
    }
    std::vector<std::uint64_t> plane(shape.width);
    for (std::uint16_t sample = 0; sample < shape.samples; ++sample) {
        if (TIFFReadScanline(tiff, plane.data(), y, sample) != 1) {
            return false;
        }
        for (std::size_t x = 0; x < plane.size(); ++x) {
            row[x * shape.samples + sample] = plane[x];
        }
    }
    return true;
}

void TakeRow(const Shape& shape, const std::vector<std::uint64_t>& row, QRgba64* out) {
    const std::size_t colors = shape.grey ? 1 : 3;
    for (std::size_t x = 0; x < shape.width; ++x) {
        const std::uint64_t* pixel = row.data() + x * shape.samples;
        quint16 channels[4] = {0, 0, 0, 0xFFFF};
        for (std::size_t i = 0; i < 3; ++i) {
            const quint16 level = Level(pixel[std::min(i, colors - 1)], shape.format);
            channels[i] = shape.inverted ? static_cast<quint16>(0xFFFF - level) : level;
        }
        if (shape.alpha) {
            channels[3] = Level(pixel[colors], shape.format);
        }
        out[x] = qRgba64(channels[0], channels[1], channels[2], channels[3]);
    }
}

}  // namespace

QImage ReadDeepTiff(QIODevice& device) {
    const Tiff tiff = Opened(device);
    const auto shape = tiff ? ShapeOf(tiff.get()) : std::nullopt;
    if (!shape) {
        return {};
    }
    const std::size_t samples = std::size_t{shape->width} * shape->samples;
    const auto rowBytes = static_cast<std::size_t>(TIFFScanlineSize64(tiff.get()));
    if (rowBytes > samples * sizeof(std::uint64_t)) {
        return {};
    }
    QImage image = NewPicture(
        {static_cast<int>(shape->width), static_cast<int>(shape->height)},
        shape->premultiplied ? QImage::Format_RGBA64_Premultiplied : QImage::Format_RGBA64);
    std::vector<std::uint64_t> row(samples);
    for (std::uint32_t y = 0; y < shape->height; ++y) {
        if (!ReadRow(tiff.get(), *shape, y, row)) {
            return {};
        }
        TakeRow(*shape, row, reinterpret_cast<QRgba64*>(image.scanLine(static_cast<int>(y))));
    }
    return image;
}

LibraryInUse TiffLibrary() {
    // "LIBTIFF, Version 4.5.0", a line of rights after it
    const QString line = QString::fromLatin1(TIFFGetVersion()).section(QLatin1Char('\n'), 0, 0);
    return {QStringLiteral("libtiff"), line.section(QLatin1Char(' '), -1),
            QStringLiteral("libtiff")};
}

}  // namespace lumirra
