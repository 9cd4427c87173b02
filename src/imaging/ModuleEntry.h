#pragma once

#include "imaging/Outcome.h"

namespace lumirra {

/// Opens one of the program's own libraries ("lumirra-NAME.so") along its run path and gives the
/// address of the function `entry` in it. The library stays open for the life of the program: what
/// it made may be in use to the end. The failure says `what` ("Videos cannot be read") and why. Any
/// thread; takes up to a tenth of a second or so.
Outcome<void*> ModuleEntry(const char* library, const char* entry, const QString& what);

}  // namespace lumirra
