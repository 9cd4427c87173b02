#include "sources/stills/PictureFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtEndian>
#include <array>
#include <cerrno>
#include <string_view>

#include "imaging/files/FileName.h"
#include "imaging/files/SystemReason.h"

namespace lumirra {
namespace {

using namespace std::string_view_literals;

struct Signature {
    std::string_view bytes;
    int offset;
    StillFormat format;
};

constexpr std::array kSignatures{
    Signature{"\xFF\xD8\xFF"sv, 0, StillFormat::Jpeg},
    Signature{"\x89PNG\r\n\x1A\n"sv, 0, StillFormat::Png},
    Signature{"GIF87a"sv, 0, StillFormat::Gif},
    Signature{"GIF89a"sv, 0, StillFormat::Gif},
    Signature{"BM"sv, 0, StillFormat::Bmp},
    Signature{"II*\0"sv, 0, StillFormat::Tiff},
    Signature{"MM\0*"sv, 0, StillFormat::Tiff},
    Signature{"II+\0"sv, 0, StillFormat::Tiff},
    Signature{"MM\0+"sv, 0, StillFormat::Tiff},
    Signature{"WEBP"sv, 8, StillFormat::Webp},
    Signature{"\0\0\1\0"sv, 0, StillFormat::Icon},
    Signature{"\0\0\0\x0CjP  \r\n\x87\n"sv, 0, StillFormat::Jpeg2000},
    Signature{"\xFF\x4F\xFF\x51"sv, 0, StillFormat::Jpeg2000},
};

std::optional<StillFormat> FormatOf(const QByteArray& start) {
    const std::string_view bytes(start.constData(), static_cast<std::size_t>(start.size()));
    for (const Signature& signature : kSignatures) {
        const auto offset = static_cast<std::size_t>(signature.offset);
        if (bytes.size() > offset && bytes.substr(offset).starts_with(signature.bytes)) {
            return signature.format;
        }
    }
    return std::nullopt;
}

Failure Unopened(const QString& path, int error) {
    if (error == ENOENT || error == ENOTDIR) {
        return {Failure::Kind::NotFound, QStringLiteral("\"%1\" does not exist.").arg(path), path};
    }
    return {Failure::Kind::Unreadable,
            QStringLiteral("\"%1\" cannot be opened: %2.").arg(path, SystemReason(error)), path};
}

Failure NotAFile(const QString& path, mode_t mode) {
    const QString what =
        S_ISDIR(mode) ? QStringLiteral("folder") : QStringLiteral("device or pipe");
    return {Failure::Kind::Unreadable,
            QStringLiteral("\"%1\" is a %2, not a video or a picture.").arg(path, what), path};
}

}  // namespace

Outcome<PictureFile> OpenPictureFile(const QString& path) {
    // Looked at before it is opened, since opening some devices has effects of its own; looked at
    // again afterwards, since the name may mean another file by then.
    const QByteArray name = FileBytes(path);
    struct stat status {};
    if (path.isEmpty() || ::stat(name.constData(), &status) != 0) {
        return Unopened(path, path.isEmpty() ? ENOENT : errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return NotAFile(path, status.st_mode);
    }
    const int descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return Unopened(path, errno);
    }
    auto file = std::make_unique<QFile>();
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        !file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return NotAFile(path, status.st_mode);
    }
    if (file->size() == 0) {
        return Failure{Failure::Kind::Unreadable, QStringLiteral("\"%1\" is empty.").arg(path),
                       path};
    }
    const auto format = FormatOf(file->peek(16));
    if (!format) {
        return Failure{Failure::Kind::Unsupported,
                       QStringLiteral("\"%1\" is not a picture that can be read.").arg(path), path};
    }
    return PictureFile{std::move(file), *format};
}

QByteArray ToolkitFormat(StillFormat format) {
    constexpr std::array names{"jpeg", "png", "gif", "bmp", "tiff", "webp", "ico", ""};
    return names.at(static_cast<std::size_t>(format));
}

std::optional<ImageSize> Jpeg2000Size(QIODevice& device) {
    // The code stream opens with the start marker and, always next, the size marker: two bytes each
    // of length and capabilities, then the far corner and the near corner of the picture.
    constexpr qint64 kSearched = 1 << 16;
    const QByteArray start = device.peek(kSearched);
    const auto at = start.indexOf(QByteArrayView("\xFF\x4F\xFF\x51", 4));
    if (at < 0 || at + 24 > start.size()) {
        return std::nullopt;
    }
    const char* corners = start.constData() + at + 8;
    const auto word = [&](int index) {
        return static_cast<double>(qFromBigEndian<quint32>(corners + 4 * index));
    };
    const ImageSize size{word(0) - word(2), word(1) - word(3)};
    return size.width > 0 && size.height > 0 ? std::optional(size) : std::nullopt;
}

namespace {

/// Walks the segments from the device's place on; true when the end marker is met.
bool MeetsJpegEnd(QIODevice& device) {
    device.skip(2);
    char byte = 0;
    while (device.getChar(&byte)) {
        if (static_cast<uchar>(byte) != 0xFF) {
            continue;  // coded data
        }
        uchar code = 0xFF;
        while (code == 0xFF) {
            if (!device.getChar(&byte)) {
                return false;
            }
            code = static_cast<uchar>(byte);
        }
        const bool bare = code <= 0x01 || (code >= 0xD0 && code <= 0xD8);
        if (code == 0xD9) {
            return true;
        }
        if (bare) {
            continue;
        }
        const QByteArray length = device.read(2);
        const int rest = length.size() == 2 ? qFromBigEndian<quint16>(length.constData()) - 2 : -1;
        if (rest < 0 || device.skip(rest) < rest) {
            return false;
        }
    }
    return false;
}

}  // namespace

bool IsJpegCutShort(QIODevice& device) {
    const qint64 place = device.pos();
    device.seek(device.size() - 2);
    const bool endsWell = device.read(2) == QByteArrayView("\xFF\xD9", 2);
    device.seek(place);
    // Most files end with the marker. Others may have anything after it, so they are walked
    // through.
    const bool complete = endsWell || MeetsJpegEnd(device);
    device.seek(place);
    return !complete;
}

}  // namespace lumirra
