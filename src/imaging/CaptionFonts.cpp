#include "imaging/CaptionFonts.h"

#include <QHash>
#include <mutex>

#include "imaging/caption/FontChoice.h"
#include "imaging/caption/FontSystem.h"

namespace lumirra::ImageTools {
namespace {

/// The system's fonts, and what names came to: frames are drawn by the thousand.
class Choices {
  public:
    CaptionFont For(const QString& name, const QString& text) {
        {
            const std::scoped_lock lock(mutex_);
            const auto known = known_.constFind(name);
            if (known != known_.constEnd()) {
                return *known;
            }
        }
        CaptionFont font = ChooseFont(name, text, fonts_);
        if (font.match != CaptionFont::Match::None) {
            const std::scoped_lock lock(mutex_);
            known_.insert(name, font);
        }
        return font;
    }

  private:
    const FontSystem fonts_;
    std::mutex mutex_;
    QHash<QString, CaptionFont> known_;  ///< those that do not depend on the text
};

}  // namespace

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

CaptionFont FontForName(const QString& name, const QString& text) {
    static Choices choices;
    return choices.For(name, text);
}

CaptionFont FontForIndex(int index, const QString& text) {
    return FontForName(CaptionFontNames().value(index), text);
}

CaptionFont FontForDescription(const QString& description, const QString& text) {
    CaptionFont font = FontForName(description.section(QLatin1Char(':'), 0, 0), text);
    if (font.match == CaptionFont::Match::Installed) {
        font.style = description.section(QLatin1Char(':'), 1);
    }
    return font;
}

QString FontDescription(const QString& family, const QString& style) {
    return style.isEmpty() ? family : family + QLatin1Char(':') + style;
}

QString FontNameForIndex(int index) {
    return FontForIndex(index).family;
}

}  // namespace lumirra::ImageTools
