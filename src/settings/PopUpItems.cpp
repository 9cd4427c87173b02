#include "imaging/CaptionFonts.h"
#include "imaging/Effects.h"
#include "settings/Control.h"

namespace lumirra {

const QStringList& PopUpItems(Control control) {
    static const QStringList none;
    // The spelling of the first item is part of the user interface.
    static const QStringList playModes{QStringLiteral("Liniar (Start - End)"),
                                       QStringLiteral("Circular (Start - End - Start)")};
    static const QStringList positions{QStringLiteral("Bottom Left"),
                                       QStringLiteral("Bottom Right"), QStringLiteral("Top Left"),
                                       QStringLiteral("Top Right"), QStringLiteral("Center")};
    static const QStringList ratios{QStringLiteral("1:1"), QStringLiteral("4:3"),
                                    QStringLiteral("3:2"), QStringLiteral("16:9")};
    static const QStringList themes{QStringLiteral("System"), QStringLiteral("Light"),
                                    QStringLiteral("Dark")};
    static const QStringList units{QStringLiteral("Percents"), QStringLiteral("Pixels")};
    switch (control) {
        case Control::ComboPlayMode:
            return playModes;
        case Control::ComboColorEffect:
            return ImageTools::PhotoEffectNames();
        case Control::ComboTextFontType:
            return ImageTools::CaptionFontNames();
        case Control::ComboTextPosition:
            return positions;
        case Control::ComboAspectRatio:
            return ratios;
        case Control::ComboCustomCrop:
            return units;
        case Control::Theme:
            return themes;
        default:
            return none;
    }
}

}  // namespace lumirra
