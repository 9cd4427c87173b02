#include "imaging/Versions.h"

#include <fontconfig/fontconfig.h>
#include <hwy/highway.h>
#include <spng.h>
#include <zlib.h>

#include "imaging/Words.h"

namespace lumirra {
namespace {

QString Dotted(int major, int minor, int patch) {
    return Filled(QStringLiteral("%1.%2.%3"), major, minor, patch);
}

}  // namespace

QString ProgramVersion() {
    return QStringLiteral(LUMIRRA_VERSION);
}

std::vector<LibraryInUse> ImagingLibraries() {
    const int fonts = FcGetVersion();
    return {
        {QStringLiteral("Qt"), QString::fromLatin1(qVersion()), QStringLiteral("LGPL-3.0-only")},
        {QStringLiteral("Highway"), Dotted(HWY_MAJOR, HWY_MINOR, HWY_PATCH),
         QStringLiteral("Apache-2.0")},
        {QStringLiteral("libspng"), QString::fromLatin1(spng_version_string()),
         QStringLiteral("BSD-2-Clause")},
        {QStringLiteral("zlib"), QString::fromLatin1(zlibVersion()), QStringLiteral("Zlib")},
        {QStringLiteral("fontconfig"), Dotted(fonts / 10000, fonts / 100 % 100, fonts % 100),
         QStringLiteral("HPND-sell-variant")}};
}

}  // namespace lumirra
