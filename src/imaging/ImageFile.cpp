#include "imaging/ImageFile.h"

#include <new>

#include "imaging/PictureFormat.h"
#include "imaging/files/FileReplacement.h"
#include "imaging/files/PngEncoder.h"

namespace lumirra::ImageTools {
namespace {

Failure NoMemory(const QString& path) {
    Failure failure = WriteFailure(path, QStringLiteral("there is not enough memory"));
    failure.kind = Failure::Kind::TooLarge;
    return failure;
}

}  // namespace

Outcome<Done> WritePng(const QImage& image, const QString& path) try {
    if (image.isNull()) {
        Failure empty = WriteFailure(path, QStringLiteral("the picture is empty"));
        empty.kind = Failure::Kind::Invalid;
        return empty;
    }
    const auto bytes = EncodePng(AsRgba8888(image));
    if (!bytes) {
        return NoMemory(path);
    }
    return ReplaceFile(path, *bytes, FileKind::Working);
} catch (const std::bad_alloc&) {
    return NoMemory(path);
}

}  // namespace lumirra::ImageTools
