#include "sources/VideoEngine.h"

#include "imaging/ModuleEntry.h"

namespace lumirra {

namespace {

Outcome<const VideoEngine*> Load() {
    using Entry = const VideoEngine* (*)();
    const auto entry = ModuleEntry("lumirra-video.so", "lumirraVideoEngine",
                                   QStringLiteral("Videos cannot be read"));
    if (!entry) {
        return entry.failure();
    }
    return reinterpret_cast<Entry>(*entry)();
}

}  // namespace

Outcome<const VideoEngine*> LoadedVideoEngine() {
    static const Outcome<const VideoEngine*> engine = Load();
    return engine;
}

}  // namespace lumirra
