#pragma once

#include <QByteArrayList>

#include "imaging/files/Descriptor.h"

namespace lumirra {

/// The names in an open folder, without "." and "..", in no order; none when it cannot be read.
QByteArrayList FolderEntries(const Descriptor& folder);

}  // namespace lumirra
