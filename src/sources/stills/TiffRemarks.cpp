#include "sources/stills/TiffRemarks.h"

#include <dlfcn.h>

#include <cstdarg>
#include <initializer_list>

namespace lumirra {
namespace {

bool Mute() {
    // Not linked to: only the toolkit's plug-in needs it, and few runs read a TIFF file. Where the
    // plug-in brings another version, its remarks are printed and nothing else is different.
    void* const library = ::dlopen("libtiff.so.6", RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) {
        return false;
    }
    using Handler = void (*)(const char*, const char*, std::va_list);
    using SetHandler = Handler (*)(Handler);
    for (const char* name : {"TIFFSetWarningHandler", "TIFFSetErrorHandler"}) {
        if (const auto set = reinterpret_cast<SetHandler>(::dlsym(library, name))) {
            set(nullptr);
        }
    }
    return true;
}

}  // namespace

void MuteTiffLibrary() {
    static const bool muted = Mute();
    static_cast<void>(muted);
}

}  // namespace lumirra
