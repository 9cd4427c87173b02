#include "sources/VideoEngine.h"

#include <dlfcn.h>

namespace lumirra {

namespace {

Outcome<const VideoEngine*> Load() {
    // A name without a folder is looked for along the program's own run path. The library is never
    // closed: pictures and engine may be in use to the end.
    constexpr auto kLibrary = "lumirra-video.so";
    if (void* const library = ::dlopen(kLibrary, RTLD_LAZY | RTLD_LOCAL)) {
        using Entry = const VideoEngine* (*)();
        if (const auto entry = reinterpret_cast<Entry>(::dlsym(library, "lumirraVideoEngine"))) {
            return entry();
        }
    }
    const char* const reason = ::dlerror();
    return Failure{Failure::Kind::Unsupported,
                   QStringLiteral("Videos cannot be read, a part of the program does not load: %1.")
                       .arg(QString::fromLocal8Bit(reason ? reason : kLibrary)),
                   QString::fromLatin1(kLibrary)};
}

}  // namespace

Outcome<const VideoEngine*> LoadedVideoEngine() {
    static const Outcome<const VideoEngine*> engine = Load();
    return engine;
}

}  // namespace lumirra
