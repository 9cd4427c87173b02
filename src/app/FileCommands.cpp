#include "app/FileCommands.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <iostream>
#include <optional>

namespace lumirra {
namespace {

constexpr qint64 kPieceBytes = 1 << 20;

void PrintLine(const char* what, const QString& path, const QString& reason) {
    std::cout << what << path.toStdString() << ": " << reason.toStdString() << std::endl;
}

/// Why it did not work out, else nothing.
std::optional<QString> CopyAll(QFile& source, QSaveFile& copy) {
    while (!source.atEnd()) {
        const QByteArray piece = source.read(kPieceBytes);
        if (piece.isEmpty()) {
            return source.errorString();
        }
        if (copy.write(piece) != piece.size()) {
            return copy.errorString();
        }
    }
    return copy.commit() ? std::nullopt : std::optional(copy.errorString());
}

}  // namespace

void RemoveFile(const QString& path) {
    QFile file(path);
    if (!file.remove()) {
        PrintLine("Remove failed: ", path, file.errorString());
    }
}

bool SaveCopy(const QString& from, const QString& to) {
    const auto fail = [](const QString& path, const QString& reason) {
        PrintLine("Save failed: ", path, reason);
        return false;
    };
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly)) {
        return fail(from, source.errorString());
    }
    if (const QFileInfo target(to); target.exists() && !target.isFile()) {
        // The rename at the end would put a file in place of a device or a pipe.
        return fail(to, QStringLiteral("it is not a regular file"));
    }
    QSaveFile copy(to);
    if (!copy.open(QIODevice::WriteOnly)) {
        return fail(to, copy.errorString());
    }
    if (const std::optional<QString> reason = CopyAll(source, copy)) {
        return fail(to, *reason);
    }
    return true;
}

}  // namespace lumirra
