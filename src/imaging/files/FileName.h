#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QUrl>
#include <cstdint>

namespace lumirra {

// A file's name is bytes to the system; most names are UTF-8, but nothing sees to it. A name
// travels through the program as a QString all the same: a byte that is no UTF-8 is kept as one of
// the code units DC80 to DCFF standing alone, which no text has. The toolkit's own file operations
// do not know of this, so a path from outside goes to the system through these alone.

QString FileText(const QByteArray& name);
QByteArray FileBytes(const QString& text);

/// For people: what is no UTF-8 is shown as U+FFFD.
QString ReadableName(const QString& text);

/// The path in the address of a local file.
QString FilePath(const QUrl& address);

/// The part of a path before its last "/"; "." without any.
QString FolderOf(const QString& path);

/// What a path leads to, links followed.
struct FileFacts {
    bool isThere = false;
    bool isFile = false;  ///< a regular one
    bool isFolder = false;
    std::int64_t bytes = 0;
    std::int64_t changed = 0;  ///< when the content was last changed, in nanoseconds of the clock
};
FileFacts FactsOf(const QString& path);

/// Opens the file for reading: 0, or the system's error number.
int OpenForReading(QFile& file, const QString& path);

}  // namespace lumirra
