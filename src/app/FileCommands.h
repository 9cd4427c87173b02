#pragma once

#include <QString>

namespace lumirra {

// Both tell of a failure in one line on standard output: such news is not for a dialog.

/// Removes the file: "Remove failed: " and the reason, also when there is none.
void RemoveFile(const QString& path);

/// `to` becomes a copy of `from`, whole or not at all: what was there stays until the copy is
/// complete. "Save failed: " and the reason, and false, when it does not work out.
bool SaveCopy(const QString& from, const QString& to);

}  // namespace lumirra
