#pragma once

#include <QString>

#include "imaging/Outcome.h"

namespace lumirra {

// All tell of a failure in one line on standard output: such news is not for a dialog.

/// "Remove failed: " and the reason.
void PrintRemoveFailed(const QString& path, const QString& reason);

/// Removes the file: "Remove failed: " and the reason, also when there is none.
void RemoveFile(const QString& path);

/// What stands where a file is about to be made is replaced by it; that nothing stands there is
/// told as `RemoveFile` does.
void TellIfMissing(const QString& path);
void TellMissing(const QString& path);

/// `to` becomes a copy of `from`, whole or not at all: what was there stays until the copy is
/// complete. "Save failed: " and the reason when it does not work out.
Outcome<Done> SaveCopy(const QString& from, const QString& to);

}  // namespace lumirra
