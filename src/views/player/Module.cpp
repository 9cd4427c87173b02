// The way in to the library that is loaded for the first film: its only exported symbol.
#include "views/player/PlayedFilm.h"

namespace lumirra {

namespace {

class ToolkitPlayer final : public FilmPlayer {
  public:
    std::unique_ptr<Film> Play(const QString& path, FilmReports reports) const override {
        return std::make_unique<PlayedFilm>(path, std::move(reports));
    }
};

}  // namespace

}  // namespace lumirra

extern "C" __attribute__((visibility("default"))) const lumirra::FilmPlayer* lumirraFilmPlayer() {
    static const lumirra::ToolkitPlayer player;
    return &player;
}
