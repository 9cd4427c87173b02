#include "sources/stills/PngFile.h"

#include <spng.h>

#include <QColorSpace>
#include <QtEndian>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>

#include "imaging/PictureFormat.h"
#include "sources/VideoEngine.h"

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

/// Codes of ITU-T H.273.
struct VideoColor {
    int primaries = 1;
    int transfer = 1;
    bool IsBt709() const { return primaries == 1 && transfer == 1; }
};

/// The first bytes of the chunk of that name, if one stands before the picture data. Searched for
/// here, since the library would hold, and limit, everything that it does not know.
std::optional<QByteArray> ChunkStart(QIODevice& device, const char* name, qint64 bytes) {
    constexpr qint64 kSignature = 8;
    constexpr qint64 kLengthAndName = 8;
    constexpr qint64 kChecksum = 4;
    const qint64 place = device.pos();
    std::optional<QByteArray> found;
    qint64 at = kSignature;
    while (!found && device.seek(at)) {
        const QByteArray head = device.read(kLengthAndName);
        if (head.size() < kLengthAndName || head.endsWith("IDAT")) {
            break;
        }
        if (head.endsWith(name)) {
            found = device.read(bytes);
        }
        at += kLengthAndName + qFromBigEndian<quint32>(head.constData()) + kChecksum;
    }
    device.seek(place);
    return found && found->size() == bytes ? found : std::nullopt;
}

/// What the chunk for video colours says; nothing when it is not there or speaks of something else.
std::optional<VideoColor> CodedColor(QIODevice& device) {
    constexpr int kUnspecified = 2;
    constexpr int kLinear = 8;
    const auto codes = ChunkStart(device, "cICP", 4);
    if (!codes || codes->at(2) != 0 || codes->at(3) != 1) {  // neither YUV nor limited range
        return std::nullopt;
    }
    const VideoColor color{static_cast<uchar>(codes->at(0)), static_cast<uchar>(codes->at(1))};
    return color.transfer == kUnspecified || color.transfer == kLinear ? std::nullopt
                                                                       : std::optional(color);
}

/// BT.2020's primaries stand in the file: of those that are written beside a video's gamma, the
/// only ones that a video is converted for.
bool IsBt2020(spng_ctx* context) {
    constexpr double kNear = 0.005;
    spng_chrm at{};
    return spng_get_chrm(context, &at) == 0 && std::abs(at.red_x - 0.708) < kNear &&
           std::abs(at.green_x - 0.170) < kNear && std::abs(at.green_y - 0.797) < kNear;
}

/// The colours are those of a video, which are shown without regard to its transfer curve: by their
/// codes, or by the gamma that programs write into pictures taken from BT.709 video.
std::optional<VideoColor> VideoColorOf(spng_ctx* context, QIODevice& device) {
    if (const auto coded = CodedColor(device)) {
        return coded;
    }
    constexpr std::uint32_t kVideoGamma = 50'994;  // 1 / 1.961
    std::uint32_t gamma = 0;
    quint8 intent = 0;
    spng_iccp profile{};
    if (spng_get_gama_int(context, &gamma) != 0 || gamma != kVideoGamma ||
        spng_get_srgb(context, &intent) == 0 || spng_get_iccp(context, &profile) == 0) {
        return std::nullopt;
    }
    return VideoColor{IsBt2020(context) ? 9 : 1, 1};
}

/// The picture in sRGB when its colours are a video's; else with a label.
void SettleColor(spng_ctx* context, QIODevice& device, QImage& image) {
    const auto video = VideoColorOf(context, device);
    if (!video) {
        image.setColorSpace(ColorSpaceOf(context));
        return;
    }
    if (video->IsBt709()) {
        return;
    }
    if (const auto engine = LoadedVideoEngine()) {
        image = (*engine)->FromVideoColor(image, video->transfer, video->primaries);
    }
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
    uchar* const rows = OwnPixels(image);
    double pixels = 0;
    int error = 0;
    spng_row_info row{};
    while (error == 0 && spng_get_row_info(context, &row) == 0) {
        error = spng_decode_row(context, rows + image.bytesPerLine() * row.row_num, rowBytes);
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

bool IsAnimatedPng(QIODevice& device) {
    const auto count = ChunkStart(device, "acTL", 4);
    return count && qFromBigEndian<quint32>(count->constData()) > 1;
}

PartlyRead ReadPng(QIODevice& device) {
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context(spng_ctx_new(0),
                                                                      spng_ctx_free);
    if (!context) {
        throw std::bad_alloc();
    }
    constexpr std::size_t kChunkLimit = 16 << 20;
    spng_ihdr header{};
    if (!device.seek(0) ||
        spng_set_chunk_limits(context.get(), kChunkLimit, 4 * kChunkLimit) != 0 ||
        spng_set_png_stream(context.get(), ReadFromDevice, &device) != 0 ||
        spng_get_ihdr(context.get(), &header) != 0) {
        return {};
    }
    const bool deep = header.bit_depth == 16;
    PartlyRead picture;
    picture.image = NewPicture({static_cast<int>(header.width), static_cast<int>(header.height)},
                               deep ? QImage::Format_RGBA64 : QImage::Format_RGBA8888);
    const int started =
        spng_decode_image(context.get(), nullptr, 0, deep ? SPNG_FMT_RGBA16 : SPNG_FMT_RGBA8,
                          SPNG_DECODE_TRNS | SPNG_DECODE_PROGRESSIVE);
    if (started == SPNG_EMEM) {
        throw std::bad_alloc();
    }
    if (started != 0) {
        return {};
    }
    picture.image.fill(Qt::transparent);
    const double pixels = ReadRows(context.get(), header, picture.image);
    if (pixels == 0) {
        return {};
    }
    picture.share = pixels / (static_cast<double>(header.width) * header.height);
    SettleColor(context.get(), device, picture.image);
    return picture;
}

}  // namespace lumirra
