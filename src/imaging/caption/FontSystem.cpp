#include "imaging/caption/FontSystem.h"

#include <algorithm>

namespace lumirra {
namespace {

struct PatternFreed {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternFreed>;

Pattern PatternOf(const QString& family) {
    Pattern pattern(FcPatternCreate());
    const QByteArray name = family.toUtf8();
    FcPatternAddString(pattern.get(), FC_FAMILY,
                       reinterpret_cast<const FcChar8*>(name.constData()));
    return pattern;
}

struct NamedFamily {
    QString name;
    bool weak;
};

/// The families that the configuration makes of one, itself left out.
std::vector<NamedFamily> Substitutes(FcConfig* config, const QString& family) {
    const Pattern pattern = PatternOf(family);
    FcConfigSubstitute(config, pattern.get(), FcMatchPattern);
    std::vector<NamedFamily> found;
    FcValue value;
    FcValueBinding binding;
    for (int i = 0;
         FcPatternGetWithBinding(pattern.get(), FC_FAMILY, i, &value, &binding) == FcResultMatch;
         ++i) {
        const QString name = QString::fromUtf8(reinterpret_cast<const char*>(value.u.s));
        if (name != family) {
            found.push_back({name, binding == FcValueBindingWeak});
        }
    }
    return found;
}

QString FamilyOf(FcPattern* pattern) {
    FcChar8* name = nullptr;
    return FcPatternGetString(pattern, FC_FAMILY, 0, &name) == FcResultMatch
               ? QString::fromUtf8(reinterpret_cast<const char*>(name))
               : QString();
}

/// What must be in the family itself: emoji and signs are drawn by fonts of their own.
std::vector<FcChar32> Letters(const QString& text) {
    std::vector<FcChar32> letters;
    const QList<uint> codes = text.toUcs4();
    for (const uint code : codes) {
        if (QChar::isLetterOrNumber(code) || QChar::isPunct(code) || QChar::isMark(code)) {
            letters.push_back(code);
        }
    }
    return letters;
}

}  // namespace

FontSystem::FontSystem(FcConfig* config) : config_(FcConfigReference(config)) {
    for (const char* const any : {"a family that nobody has", "sans-serif", "serif", "monospace",
                                  "cursive", "fantasy", "system-ui"}) {
        for (const NamedFamily& family : Substitutes(config_, QLatin1String(any))) {
            general_ << family.name;
        }
    }
    const Pattern pattern = PatternOf(QStringLiteral("sans-serif"));
    FcConfigSubstitute(config_, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultMatch;
    sorted_.reset(FcFontSort(config_, pattern.get(), FcFalse, nullptr, &result));
    for (int i = 0; sorted_ && i < sorted_->nfont; ++i) {
        FcPattern* const font = sorted_->fonts[i];
        FcBool scalable = FcFalse;
        FcCharSet* letters = nullptr;
        if (FcPatternGetBool(font, FC_SCALABLE, 0, &scalable) == FcResultMatch && scalable &&
            FcPatternGetCharSet(font, FC_CHARSET, 0, &letters) == FcResultMatch) {
            faces_.push_back({FamilyOf(font), letters});
        }
    }
}

FontSystem::~FontSystem() {
    FcConfigDestroy(config_);
}

bool FontSystem::Has(const QString& family) const {
    const Pattern pattern = PatternOf(family);
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    const std::unique_ptr<FcObjectSet, decltype(&FcObjectSetDestroy)> wanted(
        FcObjectSetBuild(FC_FAMILY, nullptr), &FcObjectSetDestroy);
    const std::unique_ptr<FcFontSet, Freed> found(FcFontList(config_, pattern.get(), wanted.get()));
    // The list leaves case and blanks aside.
    for (int i = 0; found && i < found->nfont; ++i) {
        FcChar8* name = nullptr;
        for (int n = 0; FcPatternGetString(found->fonts[i], FC_FAMILY, n, &name) == FcResultMatch;
             ++n) {
            if (QString::fromUtf8(reinterpret_cast<const char*>(name)) == family) {
                return true;
            }
        }
    }
    return false;
}

QStringList FontSystem::Aliases(const QString& family) const {
    QStringList aliases;
    for (const NamedFamily& other : Substitutes(config_, family)) {
        if (!other.weak || !general_.contains(other.name)) {
            aliases << other.name;
        }
    }
    aliases.removeDuplicates();
    return aliases;
}

QString FontSystem::Covering(const QString& text) const {
    const std::vector<FcChar32> letters = Letters(text);
    QString best;
    auto missing = static_cast<std::ptrdiff_t>(letters.size()) + 1;
    for (const Face& face : faces_) {
        const auto lacks = std::count_if(letters.cbegin(), letters.cend(), [&](FcChar32 letter) {
            return FcCharSetHasChar(face.letters, letter) == FcFalse;
        });
        if (lacks < missing) {
            missing = lacks;
            best = face.family;
        }
        if (missing == 0) {
            break;
        }
    }
    return best;
}

}  // namespace lumirra
