#include "sources/LibrariesInUse.h"

#include "sources/VideoEngine.h"

namespace lumirra {

std::vector<LibraryInUse> LibrariesInUse() {
    std::vector<LibraryInUse> all = ImagingLibraries();
    if (const auto engine = LoadedVideoEngine()) {
        const std::vector<LibraryInUse> media = (*engine)->Libraries();
        all.insert(all.end(), media.cbegin(), media.cend());
    }
    return all;
}

QString VersionText(const QString& program) {
    QString text = program + QLatin1Char(' ') + ProgramVersion() + QLatin1Char('\n');
    for (const LibraryInUse& library : LibrariesInUse()) {
        text += QStringLiteral("%1 %2\n").arg(library.name, library.version);
    }
    return text;
}

}  // namespace lumirra
