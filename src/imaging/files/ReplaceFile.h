#pragma once

#include <QByteArray>
#include <QString>

namespace lumirra {

/// Puts a file with these bytes at `path`; what was there before stays until the new one is
/// complete, and nothing else is left behind. Does not wait for the disk: meant for working files,
/// of which many are written. Gives 0, or the system's error number.
int ReplaceFile(const QString& path, const QByteArray& bytes);

}  // namespace lumirra
