#include "sources/FrameFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>

#include "imaging/CropScale.h"
#include "imaging/ImageFile.h"
#include "imaging/files/FileName.h"
#include "imaging/files/FileReplacement.h"
#include "imaging/files/SystemReason.h"
#include "sources/TemporaryFolder.h"

namespace lumirra {
namespace {

/// The clock's milliseconds, or one more than the last call was given: names ascend in the order of
/// the calls even when the clock is set back.
std::int64_t NextMillisecond() {
    static std::atomic<std::int64_t> last{0};
    using std::chrono::duration_cast, std::chrono::milliseconds, std::chrono::system_clock;
    const std::int64_t now =
        duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    std::int64_t before = last.load();
    while (!last.compare_exchange_weak(before, std::max(now, before + 1))) {
    }
    return std::max(now, before + 1);
}

/// In place of what is there.
bool Link(const QString& from, const QString& to) {
    const QByteArray name = FileBytes(to);
    ::unlink(name.constData());
    return ::link(FileBytes(from).constData(), name.constData()) == 0;
}

}  // namespace

QString FrameFileName(std::int64_t millisecondsSince1970) {
    return QStringLiteral("frame%1.png").arg(millisecondsSince1970);
}

QString ThumbnailPath(const QString& framePath) {
    return framePath.chopped(4) + QStringLiteral("_small.png");
}

Outcome<QString> NextFramePath(const QString& directory) {
    const QDir folder(directory);
    while (true) {
        const QString path = folder.filePath(FrameFileName(NextMillisecond()));
        if (auto noted = TemporaryFolder::NoteFile(path); !noted) {
            return noted.failure();
        }
        // Making the file claims the name from every other process.
        const int descriptor = ::open(FileBytes(path).constData(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (descriptor >= 0) {
            ::close(descriptor);
            return path;
        }
        if (errno != EEXIST && errno != EINTR) {
            return Failure{Failure::Kind::NotWritable,
                           QStringLiteral("Frames cannot be stored in \"%1\": %2.")
                               .arg(ReadableName(directory), SystemReason(errno)),
                           directory};
        }
    }
}

Outcome<Done> CopyFrame(const QString& fromFramePath, const QString& framePath) {
    auto copied = ReplaceByCopy(framePath, fromFramePath, FileKind::Working);
    if (copied) {
        copied = ReplaceByCopy(ThumbnailPath(framePath), ThumbnailPath(fromFramePath),
                               FileKind::Working);
    }
    if (!copied) {
        RemoveFrame(framePath);
    }
    return copied;
}

Outcome<Done> LinkFrame(const QString& fromFramePath, const QString& framePath) {
    if (Link(fromFramePath, framePath) &&
        Link(ThumbnailPath(fromFramePath), ThumbnailPath(framePath))) {
        return Done{};
    }
    return CopyFrame(fromFramePath, framePath);
}

void RemoveFrame(const QString& framePath) {
    if (framePath.isEmpty()) {
        return;
    }
    ::unlink(FileBytes(framePath).constData());
    ::unlink(FileBytes(ThumbnailPath(framePath)).constData());
}

Outcome<Done> StoreFrame(const QImage& picture, const QString& framePath) {
    auto written = ImageTools::WritePng(picture, framePath);
    if (written) {
        const double ratio = static_cast<double>(picture.width()) / picture.height();
        const double height = std::clamp(kThumbnailWidth / ratio, 1.0, kMaxThumbnailHeight);
        const QImage thumbnail = ImageTools::DrawScaled(picture, kThumbnailWidth, height);
        written = ImageTools::WritePng(thumbnail, ThumbnailPath(framePath));
    }
    if (!written) {
        RemoveFrame(framePath);
    }
    return written;
}

}  // namespace lumirra
