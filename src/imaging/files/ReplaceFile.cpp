#include "imaging/files/ReplaceFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <atomic>
#include <cerrno>
#include <cstdio>

namespace lumirra {
namespace {

int WriteAll(int file, const QByteArray& bytes) {
    const char* at = bytes.constData();
    for (qsizetype rest = bytes.size(); rest > 0;) {
        const ssize_t written = write(file, at, static_cast<std::size_t>(rest));
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        if (written > 0) {
            at += written;
            rest -= written;
        }
    }
    return 0;
}

/// A new file beside the target, under a name that no other call uses.
int OpenBeside(const QByteArray& target, QByteArray& name) {
    static std::atomic<unsigned> calls{0};
    for (;;) {
        name = target + '.' + QByteArray::number(getpid()) + '-' +
               QByteArray::number(calls.fetch_add(1)) + ".part";
        const int file = open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file >= 0 || errno != EEXIST) {
            return file;
        }
    }
}

}  // namespace

int ReplaceFile(const QString& path, const QByteArray& bytes) {
    const QByteArray target = QFile::encodeName(path);
    QByteArray name;
    const int file = OpenBeside(target, name);
    if (file < 0) {
        return errno;
    }
    int error = WriteAll(file, bytes);
    if (close(file) != 0 && error == 0) {
        error = errno;
    }
    if (error == 0 && std::rename(name.constData(), target.constData()) != 0) {
        error = errno;
    }
    if (error != 0) {
        unlink(name.constData());
    }
    return error;
}

}  // namespace lumirra
