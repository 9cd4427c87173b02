#include "views/panel/Film.h"

#include "imaging/ModuleEntry.h"

namespace lumirra {

namespace {

Outcome<const FilmPlayer*> Load() {
    using Entry = const FilmPlayer* (*)();
    const auto entry = ModuleEntry("lumirra-player.so", "lumirraFilmPlayer",
                                   QStringLiteral("Videos cannot be played"));
    if (!entry) {
        return entry.failure();
    }
    return reinterpret_cast<Entry>(*entry)();
}

}  // namespace

Outcome<const FilmPlayer*> LoadedFilmPlayer() {
    static const Outcome<const FilmPlayer*> player = Load();
    return player;
}

}  // namespace lumirra
