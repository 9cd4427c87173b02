#include "output/frames/FrameReader.h"

#include <spng.h>

#include <QColorSpace>
#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <memory>
#include <new>

#include "imaging/PictureFormat.h"
#include "imaging/PixelLimits.h"
#include "imaging/Words.h"
#include "imaging/files/FileName.h"
#include "imaging/files/SystemReason.h"

namespace lumirra {

namespace {

struct ContextDeleter {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};
using Context = std::unique_ptr<spng_ctx, ContextDeleter>;

Failure Unreadable(const QString& path, const QString& reason) {
    return {Failure::Kind::Unreadable,
            QStringLiteral("Could not read the frame \"%1\": %2.").arg(path, reason), path};
}

Failure TooLarge(const QString& path, long long width, long long height) {
    return {Failure::Kind::TooLarge,
            Filled(QStringLiteral("The frame \"%1\" is too large: %2 x %3 pixels."), path, width,
                   height),
            path};
}

bool FitsLimits(long long width, long long height) {
    return width > 0 && height > 0 && width * height <= kMaxFramePixels;
}

/// Feeds the decoder from an open file.
int ReadFrom(spng_ctx* /*context*/, void* user, void* destination, std::size_t length) {
    auto* file = static_cast<QFile*>(user);
    const qint64 wanted = static_cast<qint64>(length);
    return file->read(static_cast<char*>(destination), wanted) == wanted ? 0 : SPNG_IO_EOF;
}

Context OpenPng(QFile& file) {
    Context context(spng_ctx_new(0));
    if (context == nullptr || spng_set_png_stream(context.get(), ReadFrom, &file) != 0) {
        return nullptr;
    }
    constexpr std::size_t kChunkLimit = std::size_t{64} << 20U;
    spng_set_chunk_limits(context.get(), kChunkLimit, kChunkLimit);
    return context;
}

bool IsPng(QFile& file) {
    static constexpr char kSignature[] = {'\x89', 'P', 'N', 'G'};
    return file.peek(sizeof kSignature) == QByteArray(kSignature, sizeof kSignature);
}

/// Eight bits a channel and colours that mean sRGB.
bool IsPlain(spng_ctx* context, const spng_ihdr& header) {
    spng_iccp profile{};
    return header.bit_depth == 8 && spng_get_iccp(context, &profile) != 0;
}

Outcome<QImage> ReadOther(QFile& file, const QString& path) {
    file.seek(0);
    QImageReader reader(&file);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    AllowLargestSources();
    const QSize size = reader.size();
    if (size.isValid() && !FitsLimits(size.width(), size.height())) {
        return TooLarge(path, size.width(), size.height());
    }
    QImage image = reader.read();
    if (image.isNull()) {
        if (!size.isEmpty()) {
            Made(QImage(size, QImage::Format_RGBA64));  // it may have been for want of memory
        }
        return Unreadable(path, reader.errorString());
    }
    if (!FitsLimits(image.width(), image.height())) {
        return TooLarge(path, image.width(), image.height());
    }
    const QColorSpace space = image.colorSpace();
    const QColorSpace sRgb(QColorSpace::SRgb);
    const bool deep = image.depth() > 32;
    if (space.isValid() && space != sRgb) {
        image = Converted(std::move(image), deep ? QImage::Format_RGBA64 : QImage::Format_RGBA8888);
        TransformColors(image, space.transformationToColorSpace(sRgb), 1);
    }
    return AsRgba8888(image);
}

}  // namespace

Outcome<ImageSize> ReadFrameSize(const QString& path) {
    QFile file;
    if (const int error = OpenForReading(file, path); error != 0) {
        return Unreadable(path, SystemReason(error));
    }
    if (IsPng(file)) {
        const Context context = OpenPng(file);
        spng_ihdr header{};
        if (context == nullptr || spng_get_ihdr(context.get(), &header) != 0) {
            return Unreadable(path, QStringLiteral("the header is damaged"));
        }
        return ImageSize{static_cast<double>(header.width), static_cast<double>(header.height)};
    }
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    QSize size = reader.size();
    if (!size.isValid() || size.isEmpty()) {
        return Unreadable(path, QStringLiteral("it is not a picture"));
    }
    if ((reader.transformation() & QImageIOHandler::TransformationRotate90) != 0) {
        size.transpose();
    }
    return ImageSize{static_cast<double>(size.width()), static_cast<double>(size.height())};
}

Outcome<QImage> ReadFrame(const QString& path) {
    QFile file;
    if (const int error = OpenForReading(file, path); error != 0) {
        return Unreadable(path, SystemReason(error));
    }
    if (!IsPng(file)) {
        return ReadOther(file, path);
    }
    const Context context = OpenPng(file);
    spng_ihdr header{};
    if (context == nullptr || spng_get_ihdr(context.get(), &header) != 0) {
        return Unreadable(path, QStringLiteral("the header is damaged"));
    }
    if (!FitsLimits(header.width, header.height)) {
        return TooLarge(path, header.width, header.height);
    }
    if (!IsPlain(context.get(), header)) {
        return ReadOther(file, path);
    }
    QImage image = NewPicture({static_cast<int>(header.width), static_cast<int>(header.height)},
                              QImage::Format_RGBA8888);
    const int error = spng_decode_image(context.get(), OwnPixels(image),
                                        static_cast<std::size_t>(image.sizeInBytes()),
                                        SPNG_FMT_RGBA8, SPNG_DECODE_TRNS);
    if (error == SPNG_EMEM) {
        throw std::bad_alloc();
    }
    if (error != 0) {
        return Unreadable(path, QString::fromLatin1(spng_strerror(error)));
    }
    return image;
}

}  // namespace lumirra
