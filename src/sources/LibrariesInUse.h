#pragma once

#include "imaging/Versions.h"

namespace lumirra {

/// All libraries that the engine runs on, for `--version` and the window's own page. Loads the
/// video engine; what is behind it is left out when that fails. Any thread.
std::vector<LibraryInUse> LibrariesInUse();

/// "PROGRAM 0.1.0" and one line for each library.
QString VersionText(const QString& program);

}  // namespace lumirra
