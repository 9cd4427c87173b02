#pragma once

#include <QString>
#include <vector>

namespace lumirra {

/// "0.1.0": the top heading of CHANGELOG.md, from where the build takes it.
QString ProgramVersion();

/// A library that the program runs on.
struct LibraryInUse {
    QString name;
    QString version;  ///< of the one that is loaded now
    QString licence;  ///< SPDX expression
};

/// What is linked in any case. Any thread.
std::vector<LibraryInUse> ImagingLibraries();

}  // namespace lumirra
