#include "imaging/files/SystemReason.h"

#include <cerrno>
#include <cstring>

namespace lumirra {

QString SystemReason(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return QStringLiteral("it does not exist");
        case EACCES:
        case EPERM:
            return QStringLiteral("permission was denied");
        case EROFS:
            return QStringLiteral("the disk is read-only");
        case ENOSPC:
        case EDQUOT:
            return QStringLiteral("the disk is full");
        case EMFILE:
        case ENFILE:
            return QStringLiteral("too many files are open");
        default:
            return QString::fromLocal8Bit(std::strerror(error));
    }
}

}  // namespace lumirra
