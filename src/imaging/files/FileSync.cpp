#include "imaging/files/FileSync.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace lumirra {

int SyncFile(const Descriptor& file) {
    while (::fsync(file.Get()) != 0) {
        if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

int SyncFolder(const QByteArray& folder) {
    const Descriptor opened(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.IsOpen()) {
        return errno == EACCES ? 0 : errno;
    }
    const int error = SyncFile(opened);
    return error == EINVAL ? 0 : error;
}

int SyncFiles(const QByteArrayList& paths) {
    constexpr qsizetype kAtOnce = 64;
    for (qsizetype first = 0; first < paths.size(); first += kAtOnce) {
        // The disk begins with all of them before the first is waited for.
        std::vector<Descriptor> files;
        for (const QByteArray& path : paths.mid(first, kAtOnce)) {
            Descriptor file(::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
            if (!file.IsOpen() && errno != ENOENT) {
                return errno;
            }
            if (file.IsOpen()) {
                static_cast<void>(::sync_file_range(file.Get(), 0, 0, SYNC_FILE_RANGE_WRITE));
                files.push_back(std::move(file));
            }
        }
        for (const Descriptor& file : files) {
            if (const int error = SyncFile(file); error != 0) {
                return error;
            }
        }
    }
    return 0;
}

}  // namespace lumirra
