#include "imaging/ModuleEntry.h"

#include <dlfcn.h>

namespace lumirra {

Outcome<void*> ModuleEntry(const char* library, const char* entry, const QString& what) {
    // A name without a folder is looked for along the run path of the program this is linked into.
    if (void* const opened = ::dlopen(library, RTLD_LAZY | RTLD_LOCAL)) {
        if (void* const found = ::dlsym(opened, entry)) {
            return found;
        }
    }
    const char* const reason = ::dlerror();
    return Failure{Failure::Kind::Unsupported,
                   QStringLiteral("%1, a part of the program does not load: %2.")
                       .arg(what, QString::fromLocal8Bit(reason ? reason : library)),
                   QString::fromLatin1(library)};
}

}  // namespace lumirra
