#include "imaging/Caption.h"

namespace lumirra::ImageTools {

const QStringList& CaptionFontNames() {
    static const QStringList names{QStringLiteral("American Typewriter"),
                                   QStringLiteral("Arial"),
                                   QStringLiteral("Chalkduster"),
                                   QStringLiteral("Comic Sans MS"),
                                   QStringLiteral("Copperplate"),
                                   QStringLiteral("Didot"),
                                   QStringLiteral("Futura"),
                                   QStringLiteral("Geneva"),
                                   QStringLiteral("Georgia"),
                                   QStringLiteral("Gill Sans"),
                                   QStringLiteral("Helvetica"),
                                   QStringLiteral("Impact"),
                                   QStringLiteral("Marker Felt"),
                                   QStringLiteral("Monaco"),
                                   QStringLiteral("Optima"),
                                   QStringLiteral("Papyrus"),
                                   QStringLiteral("Skia"),
                                   QStringLiteral("Times New Roman"),
                                   QStringLiteral("Trebuchet MS"),
                                   QStringLiteral("Verdana")};
    return names;
}

}  // namespace lumirra::ImageTools
