#pragma once

#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QString>
#include <memory>
#include <optional>

#include "imaging/Geometry.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// The file formats told apart by their first bytes; the extension has no say.
enum class StillFormat { Jpeg, Png, Gif, Bmp, Tiff, Webp, Icon, Jpeg2000 };

/// A regular file open for reading at its start, and what it holds.
struct PictureFile {
    std::unique_ptr<QFile> device;
    StillFormat format = StillFormat::Png;
};

/// What a file of which parts may be missing gives; pixels that could not be read are transparent.
struct PartlyRead {
    QImage image;      ///< straight alpha, labelled with its colour space; may be null
    double share = 0;  ///< of its pixels that were read, 1 for a whole picture
};

/// Opens without ever waiting: a pipe, a device or a folder is refused. The failure says what the
/// file is instead of a picture.
Outcome<PictureFile> OpenPictureFile(const QString& path);

/// The toolkit's name of a format; empty for JPEG 2000, which it does not read.
QByteArray ToolkitFormat(StillFormat format);

/// Width and height in the header of a JPEG 2000 file; absent when there is none. The device's
/// place is kept.
std::optional<ImageSize> Jpeg2000Size(QIODevice& device);

/// Whether a JPEG file breaks off before its end marker. The device's place is kept.
bool IsJpegCutShort(QIODevice& device);

}  // namespace lumirra
