#pragma once

#include <QString>
#include <QStringList>

namespace lumirra::ImageTools {

/// The twenty caption families, in the order of the pop-up.
const QStringList& CaptionFontNames();

/// What a font name comes to on this system.
struct CaptionFont {
    enum class Match {
        Installed,  ///< the family itself
        StandIn,    ///< another one of its character, or that the system gives for it
        None        ///< no more than a family that has the letters
    };
    QString name;    ///< as asked for
    QString family;  ///< what is drawn; empty only for an empty name, or without any font
    QString style;   ///< of the family, such as "Bold Italic"; empty: the regular one
    Match match = Match::None;
};

/// The font drawn for that name. A family that is not installed is replaced by the one that the
/// system's font configuration names for it, else by a free family of the same character, else
/// by a family that has the letters of `text`. Any thread; fonts that are installed
/// while the program runs are not seen.
CaptionFont FontForName(const QString& name, const QString& text = {});

/// A row of the pop-up; an empty name for an index outside 0..19.
CaptionFont FontForIndex(int index, const QString& text = {});

/// "Family" or "Family:Style", as the setting for another font holds it. A style that another
/// family stands in for is dropped.
CaptionFont FontForDescription(const QString& description, const QString& text = {});
QString FontDescription(const QString& family, const QString& style);

/// The family drawn for that row of the pop-up; empty for an index outside 0..19.
QString FontNameForIndex(int index);

}  // namespace lumirra::ImageTools
