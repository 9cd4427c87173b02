#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include "imaging/files/Descriptor.h"

namespace lumirra {

// Has what was written survive a loss of power. Each gives 0, or the system's error number. Any
// thread.

int SyncFile(const Descriptor& file);

/// The names in the folder. One that may be written but not read, or whose file system has no such
/// operation, is as safe as it can be.
int SyncFolder(const QByteArray& folder);

/// The contents of many files at a time. One that is not there any more needs nothing.
int SyncFiles(const QByteArrayList& paths);

}  // namespace lumirra
