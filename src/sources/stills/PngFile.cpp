#include "sources/stills/PngFile.h"

#include <spng.h>

#include <QColorSpace>
#include <QtEndian>
#include <array>
#include <memory>

namespace lumirra {
namespace {

int ReadFromDevice(spng_ctx* /*context*/, void* user, void* target, std::size_t length) {
    auto* device = static_cast<QIODevice*>(user);
    const auto wanted = static_cast<qint64>(length);
    return device->read(static_cast<char*>(target), wanted) == wanted ? 0 : SPNG_IO_EOF;
}

/// What the file says of its colours; invalid when it says nothing, which means sRGB.
QColorSpace ColorSpaceOf(spng_ctx* context) {
    quint8 intent = 0;
    if (spng_get_srgb(context, &intent) == 0) {
        return {QColorSpace::SRgb};
    }
    spng_iccp profile{};
    if (spng_get_iccp(context, &profile) == 0) {
        return QColorSpace::fromIccProfile(
            QByteArray(profile.profile, static_cast<qsizetype>(profile.profile_len)));
    }
    double exponent = 0;
    if (spng_get_gama(context, &exponent) != 0 || exponent <= 0) {
        return {};
    }
    const auto gamma = static_cast<float>(1 / exponent);
    spng_chrm at{};
    if (spng_get_chrm(context, &at) != 0) {
        return {QColorSpace::Primaries::SRgb, gamma};
    }
    return {QPointF(at.white_point_x, at.white_point_y),
            QPointF(at.red_x, at.red_y),
            QPointF(at.green_x, at.green_y),
            QPointF(at.blue_x, at.blue_y),
            QColorSpace::TransferFunction::Gamma,
            gamma};
}

/// Pixels that one stored row holds: all of a row, or those of its interlacing pass.
double PixelsInRow(const spng_ihdr& header, int pass) {
    constexpr std::array<unsigned, 7> kStart{0, 4, 0, 2, 0, 1, 0};
    constexpr std::array<unsigned, 7> kStep{8, 8, 4, 4, 2, 2, 1};
    const auto index = static_cast<std::size_t>(pass);
    if (header.interlace_method == 0) {
        return header.width;
    }
    const auto columns = (header.width - kStart.at(index) + kStep.at(index) - 1) / kStep.at(index);
    return columns;
}

/// The rows that the file gives, each in its place; the number of pixels in them.
double ReadRows(spng_ctx* context, const spng_ihdr& header, QImage& image) {
    const auto rowBytes = static_cast<std::size_t>(header.width) * (image.depth() / 8);
    double pixels = 0;
    int error = 0;
    spng_row_info row{};
    while (error == 0 && spng_get_row_info(context, &row) == 0) {
        error = spng_decode_row(context, image.scanLine(static_cast<int>(row.row_num)), rowBytes);
        if (error == 0 || error == SPNG_EOI) {
            pixels += PixelsInRow(header, row.pass);
        }
    }
    return pixels;
}

}  // namespace

ImageSize PngSize(QIODevice& device) {
    // The signature, then the header's length and name, then the two sides.
    const QByteArray start = device.peek(24);
    if (start.size() < 24 || start.mid(12, 4) != "IHDR") {
        return {};
    }
    return {static_cast<double>(qFromBigEndian<quint32>(start.constData() + 16)),
            static_cast<double>(qFromBigEndian<quint32>(start.constData() + 20))};
}

PngPicture ReadPng(QIODevice& device) {
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context(spng_ctx_new(0),
                                                                      spng_ctx_free);
    constexpr std::size_t kChunkLimit = 16 << 20;
    spng_ihdr header{};
    if (!context || !device.seek(0) ||
        spng_set_chunk_limits(context.get(), kChunkLimit, 4 * kChunkLimit) != 0 ||
        spng_set_png_stream(context.get(), ReadFromDevice, &device) != 0 ||
        spng_get_ihdr(context.get(), &header) != 0) {
        return {};
    }
    const bool deep = header.bit_depth == 16;
    PngPicture picture;
    picture.image = QImage(static_cast<int>(header.width), static_cast<int>(header.height),
                           deep ? QImage::Format_RGBA64 : QImage::Format_RGBA8888);
    if (picture.image.isNull() ||
        spng_decode_image(context.get(), nullptr, 0, deep ? SPNG_FMT_RGBA16 : SPNG_FMT_RGBA8,
                          SPNG_DECODE_TRNS | SPNG_DECODE_PROGRESSIVE) != 0) {
        return {};
    }
    picture.image.fill(Qt::transparent);
    const double pixels = ReadRows(context.get(), header, picture.image);
    if (pixels == 0) {
        return {};
    }
    picture.share = pixels / (static_cast<double>(header.width) * header.height);
    picture.image.setColorSpace(ColorSpaceOf(context.get()));
    return picture;
}

}  // namespace lumirra
