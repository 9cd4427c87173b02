#include "app/session/FileCommands.h"

#include <unistd.h>

#include <cerrno>
#include <iostream>

#include "imaging/files/FileName.h"
#include "imaging/files/FileReplacement.h"
#include "imaging/files/SystemReason.h"

namespace lumirra {
namespace {

void PrintLine(const char* what, const QString& text) {
    std::cout << what << ReadableName(text).toStdString() << std::endl;
}

}  // namespace

void PrintRemoveFailed(const QString& path, const QString& reason) {
    PrintLine("Remove failed: ", path + QStringLiteral(": ") + reason);
}

void RemoveFile(const QString& path) {
    if (::unlink(FileBytes(path).constData()) != 0) {
        PrintRemoveFailed(path, SystemReason(errno));
    }
}

void TellMissing(const QString& path) {
    PrintRemoveFailed(path, SystemReason(ENOENT));
}

void TellIfMissing(const QString& path) {
    if (::access(FileBytes(path).constData(), F_OK) != 0) {
        TellMissing(path);
    }
}

Outcome<Done> SaveCopy(const QString& from, const QString& to) {
    auto saved = ReplaceByCopy(to, from, FileKind::UsersOwn);
    if (!saved) {
        PrintLine("Save failed: ", saved.failure().message);
    }
    return saved;
}

}  // namespace lumirra
