#include "imaging/caption/FontChoice.h"

#include <algorithm>
#include <array>

#include "imaging/caption/FontSystem.h"

namespace lumirra {
namespace {

struct Row {
    const char* name;
    std::array<const char*, 4> families;  ///< the first in each row is a package of Debian 12
};

// The package recommends those that hold the first of each row (debian/control).
constexpr Row kRows[] = {
    {"American Typewriter", {"Latin Modern Mono Prop", "CMU Typewriter Text Variable Width"}},
    {"Arial", {"Liberation Sans", "Arimo", "Nimbus Sans", "FreeSans"}},
    {"Chalkduster", {"CabinSketch", "Cabin Sketch", "Rufscript"}},
    {"Comic Sans MS", {"Comic Neue", "Comic Relief", "Tomson Talks"}},
    {"Copperplate", {"Latin Modern Roman Caps", "Quattrocento"}},
    {"Didot", {"GFS Didot", "Old Standard"}},
    {"Futura", {"League Spartan", "Jost", "URW Gothic", "Universalis ADF Std"}},
    {"Geneva", {"Clear Sans", "Verana Sans", "DejaVu Sans"}},
    {"Georgia", {"Charis SIL", "Gelasio", "DejaVu Serif", "C059"}},
    {"Gill Sans", {"Gillius ADF", "Cabin", "Carlito"}},
    {"Helvetica", {"Nimbus Sans", "TeX Gyre Heros", "Liberation Sans", "FreeSans"}},
    {"Impact", {"OSP-DIN", "Anton", "League Gothic", "Bebas Neue"}},
    {"Marker Felt", {"Yusei Magic", "Permanent Marker", "Rufscript", "Summersby"}},
    {"Monaco", {"DejaVu Sans Mono", "Hack", "Liberation Mono"}},
    {"Optima", {"Linux Biolinum O", "Linux Biolinum", "Quattrocento"}},
    {"Papyrus", {"Berenika", "Klaudia", "Essays1743"}},
    {"Skia", {"Ikarius ADF Std", "Cabin", "Lato"}},
    {"Times New Roman", {"Liberation Serif", "Tinos", "Nimbus Roman", "FreeSerif"}},
    {"Trebuchet MS", {"Open Sans", "Fira Sans", "Junction", "Cantarell"}},
    {"Verdana", {"DejaVu Sans", "Verana Sans", "Bitstream Vera Sans"}},
};

}  // namespace

QStringList FamiliesLike(const QString& name) {
    const auto* const row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& r) {
        return name == QLatin1String(r.name);
    });
    QStringList families;
    if (row != std::end(kRows)) {
        for (const char* const family : row->families) {
            if (family != nullptr) {
                families << QLatin1String(family);
            }
        }
    }
    return families;
}

ImageTools::CaptionFont ChooseFont(const QString& name, const QString& text,
                                   const FontSystem& fonts) {
    using Match = ImageTools::CaptionFont::Match;
    if (name.isEmpty()) {
        return {};
    }
    if (fonts.Has(name)) {
        return {name, name, {}, Match::Installed};
    }
    const QStringList others = fonts.Aliases(name) + FamiliesLike(name);
    for (const QString& other : others) {
        if (fonts.Has(other)) {
            return {name, other, {}, Match::StandIn};
        }
    }
    return {name, fonts.Covering(text), {}, Match::None};
}

}  // namespace lumirra
