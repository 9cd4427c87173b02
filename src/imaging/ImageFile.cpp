#include "imaging/ImageFile.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <optional>

#include "imaging/files/PngEncoder.h"
#include "imaging/files/ReplaceFile.h"
#include "imaging/files/StillGif.h"

namespace lumirra::ImageTools {
namespace {

std::optional<QByteArray> EncodeByToolkit(const QImage& image, const char* format, int quality,
                                          int compression) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (quality >= 0) {
        writer.setQuality(quality);
    }
    writer.setCompression(compression);
    if (!writer.write(image)) {
        return std::nullopt;
    }
    return buffer.data();
}

/// For formats without transparency: the picture on white paper.
QImage OnWhite(const QImage& rgba) {
    QImage opaque(rgba.size(), QImage::Format_RGB888);
    if (!opaque.isNull()) {
        opaque.fill(Qt::white);
        QPainter(&opaque).drawImage(0, 0, rgba);
    }
    return opaque;
}

std::optional<QByteArray> Encode(const QImage& rgba, ImageFileFormat format, double factor) {
    constexpr int kLzw = 1;
    switch (format) {
        case ImageFileFormat::Jpeg: {
            const double quality = std::isnan(factor) ? 1.0 : std::clamp(factor, 0.0, 1.0);
            return EncodeByToolkit(OnWhite(rgba), "jpeg",
                                   static_cast<int>(std::lround(quality * 100)), 0);
        }
        case ImageFileFormat::Png:
            return EncodePng(rgba);
        case ImageFileFormat::Tiff:
            return EncodeByToolkit(rgba, "tiff", -1, kLzw);
        case ImageFileFormat::Gif:
            return EncodeStillGif(rgba);
        case ImageFileFormat::Bmp:
            return EncodeByToolkit(OnWhite(rgba), "bmp", -1, 0);
    }
    return std::nullopt;
}

Failure WriteFailure(const QString& path, const QString& reason) {
    return {Failure::Kind::NotWritable,
            QStringLiteral("Could not write \"%1\": %2.").arg(path, reason), path};
}

/// The reason in the user's words where there are better ones than the system's.
QString ReasonFor(const QString& path, int error) {
    const QFileInfo target(path);
    const QFileInfo folder(target.absolutePath());
    if (target.isDir()) {
        return QStringLiteral("a folder has this name");
    }
    if (target.exists() && !target.isFile()) {
        return QStringLiteral("it is not a regular file");
    }
    if (!folder.exists()) {
        return QStringLiteral("the folder does not exist");
    }
    if (!folder.isDir()) {
        return QStringLiteral("\"%1\" is not a folder").arg(folder.filePath());
    }
    if (error == ENOSPC || error == EDQUOT) {
        return QStringLiteral("the disk is full");
    }
    if (!folder.isWritable() || (target.exists() && !target.isWritable())) {
        return QStringLiteral("you have no right to write there");
    }
    return QString::fromLocal8Bit(std::strerror(error));
}

}  // namespace

Outcome<Done> WriteImage(const QImage& image, const QString& path, ImageFileFormat format,
                         double compressionFactor) {
    if (image.isNull()) {
        return Failure{Failure::Kind::Invalid,
                       QStringLiteral("Could not write \"%1\": the picture is empty.").arg(path),
                       path};
    }
    const auto bytes =
        Encode(image.convertToFormat(QImage::Format_RGBA8888), format, compressionFactor);
    if (!bytes || bytes->isEmpty()) {
        return Failure{
            Failure::Kind::Unsupported,
            QStringLiteral("Could not write \"%1\": a picture of %2 x %3 pixels cannot be stored "
                           "in this format.")
                .arg(path)
                .arg(image.width())
                .arg(image.height()),
            path};
    }
    const QFileInfo target(path);
    if (target.exists() && !target.isFile()) {  // the rename would replace a device or a pipe
        return WriteFailure(path, ReasonFor(path, 0));
    }
    if (const int error = ReplaceFile(path, *bytes); error != 0) {
        return WriteFailure(path, ReasonFor(path, error));
    }
    return Done{};
}

bool SaveImage(const QImage& image, const QString& path, ImageFileFormat format,
               double compressionFactor) {
    return static_cast<bool>(WriteImage(image, path, format, compressionFactor));
}

}  // namespace lumirra::ImageTools
