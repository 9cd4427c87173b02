// The way in to the library that is loaded for the first film: its only exported symbol.
#include <QLoggingCategory>

#include "views/player/PlayedFilm.h"

namespace lumirra {

namespace {

class ToolkitPlayer final : public FilmPlayer {
  public:
    std::unique_ptr<Film> Play(const QString& path, const DisplayTransform& display,
                               FilmReports reports) const override {
        return std::make_unique<PlayedFilm>(path, display, std::move(reports));
    }
};

}  // namespace

}  // namespace lumirra

extern "C" __attribute__((visibility("default"))) const lumirra::FilmPlayer* lumirraFilmPlayer() {
    // What the toolkit's player has to say of each decoder that it tries, to whoever works on it.
    static const bool quiet = [] {
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
        return true;
    }();
    static_cast<void>(quiet);
    static const lumirra::ToolkitPlayer player;
    return &player;
}
