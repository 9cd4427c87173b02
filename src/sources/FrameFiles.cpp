#include "sources/FrameFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>

#include "imaging/CropScale.h"
#include "imaging/ImageFile.h"
#include "sources/SystemReason.h"

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

/// By way of a file beside the target, which takes its name when it is complete.
bool CopyFile(const QString& from, const QString& to) {
    const std::filesystem::path target(QFile::encodeName(to).toStdString());
    const std::filesystem::path beside(target.native() + ".new");
    std::error_code error;
    std::filesystem::copy_file(QFile::encodeName(from).toStdString(), beside,
                               std::filesystem::copy_options::overwrite_existing, error);
    if (!error) {
        std::filesystem::rename(beside, target, error);
    }
    if (error) {
        std::error_code ignored;
        std::filesystem::remove(beside, ignored);
    }
    return !error;
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
        // Making the file claims the name from every other process.
        const int descriptor = ::open(QFile::encodeName(path).constData(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (descriptor >= 0) {
            ::close(descriptor);
            return path;
        }
        if (errno != EEXIST && errno != EINTR) {
            return Failure{Failure::Kind::NotWritable,
                           QStringLiteral("Frames cannot be stored in \"%1\": %2.")
                               .arg(directory, SystemReason(errno)),
                           directory};
        }
    }
}

Outcome<Done> CopyFrame(const QString& fromFramePath, const QString& framePath) {
    if (CopyFile(fromFramePath, framePath) &&
        CopyFile(ThumbnailPath(fromFramePath), ThumbnailPath(framePath))) {
        return Done{};
    }
    RemoveFrame(framePath);
    return Failure{Failure::Kind::NotWritable,
                   QStringLiteral("The frame \"%1\" cannot be stored.").arg(framePath), framePath};
}

void RemoveFrame(const QString& framePath) {
    if (framePath.isEmpty()) {
        return;
    }
    QFile::remove(framePath);
    QFile::remove(ThumbnailPath(framePath));
}

Outcome<Done> StoreFrame(const QImage& picture, const QString& framePath) {
    auto written = ImageTools::WriteImage(picture, framePath, ImageFileFormat::Png, 1.0);
    if (written) {
        const double ratio = static_cast<double>(picture.width()) / picture.height();
        const double height = std::clamp(kThumbnailWidth / ratio, 1.0, kMaxThumbnailHeight);
        const QImage thumbnail = ImageTools::DrawScaled(picture, kThumbnailWidth, height);
        written =
            ImageTools::WriteImage(thumbnail, ThumbnailPath(framePath), ImageFileFormat::Png, 1.0);
    }
    if (!written) {
        RemoveFrame(framePath);
    }
    return written;
}

}  // namespace lumirra
