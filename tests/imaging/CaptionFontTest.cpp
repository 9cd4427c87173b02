#include <gtest/gtest.h>

#include <memory>

#include "imaging/caption/FontChoice.h"
#include "imaging/caption/FontSystem.h"

namespace lumirra {
namespace {

using Match = ImageTools::CaptionFont::Match;

/// A machine with the DejaVu families alone, whose configuration has an alias of each kind.
constexpr char kConfiguration[] = R"(<fontconfig>
<dir>/usr/share/fonts/truetype/dejavu</dir><cachedir prefix="xdg">fontconfig</cachedir>
<alias binding="same"><family>Arial</family><accept><family>DejaVu Serif</family></accept></alias>
<alias><family>Our House</family><prefer><family>DejaVu Serif</family></prefer></alias>
<alias><family>Impact</family><default><family>fantasy</family></default></alias>
<alias><family>fantasy</family><prefer><family>DejaVu Sans</family></prefer></alias>
<alias><family>sans-serif</family>
  <prefer><family>DejaVu Sans Mono</family><family>DejaVu Sans</family></prefer></alias>
</fontconfig>)";

struct Machine {
    std::unique_ptr<FcConfig, decltype(&FcConfigDestroy)> config;
    FontSystem fonts;

    static FcConfig* Read(const char* text) {
        FcConfig* const config = FcConfigCreate();
        EXPECT_TRUE(
            FcConfigParseAndLoadFromMemory(config, reinterpret_cast<const FcChar8*>(text), FcTrue));
        EXPECT_TRUE(FcConfigBuildFonts(config));
        return config;
    }
    explicit Machine(const char* text)
        : config(Read(text), &FcConfigDestroy), fonts(config.get()) {}
};

TEST(CaptionFont, IsTheFamilyOrWhatStandsInForIt) {
    const Machine machine(kConfiguration);
    ASSERT_TRUE(machine.fonts.Has(QStringLiteral("DejaVu Sans"))) << "fonts-dejavu-core is missing";
    EXPECT_FALSE(machine.fonts.Has(QStringLiteral("dejavu sans")));
    const struct {
        const char* name;
        const char* family;
        Match match;
    } cases[] = {
        {"DejaVu Serif", "DejaVu Serif", Match::Installed},
        {"Arial", "DejaVu Serif", Match::StandIn},      // the configuration's word
        {"Our House", "DejaVu Serif", Match::StandIn},  // also a weak one
        {"Verdana", "DejaVu Sans", Match::StandIn},     // of the same character
        {"Monaco", "DejaVu Sans Mono", Match::StandIn},
        {"Impact", "DejaVu Sans Mono", Match::None},  // named for a whole class alone
        {"Nobody", "DejaVu Sans Mono", Match::None},
    };
    for (const auto& one : cases) {
        const auto font = ChooseFont(QLatin1String(one.name), {}, machine.fonts);
        EXPECT_EQ(font.name, QLatin1String(one.name));
        EXPECT_EQ(font.family, QLatin1String(one.family)) << one.name;
        EXPECT_EQ(font.match, one.match) << one.name;
    }
    EXPECT_TRUE(ChooseFont({}, QStringLiteral("x"), machine.fonts).family.isEmpty());
    const Machine bare("<fontconfig></fontconfig>");
    EXPECT_TRUE(ChooseFont(QStringLiteral("Arial"), {}, bare.fonts).family.isEmpty());
}

TEST(CaptionFont, WithoutAStandInHasTheLettersOfTheCaption) {
    const Machine machine(kConfiguration);
    const auto drawn = [&](const char* text) {
        return ChooseFont(QStringLiteral("Nobody"), QString::fromUtf8(text), machine.fonts).family;
    };
    EXPECT_EQ(drawn("Grüße, Κόσμε! 🎉"), QStringLiteral("DejaVu Sans Mono"));
    EXPECT_EQ(drawn("azul ⵣ"), QStringLiteral("DejaVu Sans"));   // Tifinagh: not in the first
    EXPECT_EQ(drawn("ab ⵣ 漢"), QStringLiteral("DejaVu Sans"));  // nobody has all: most
}

TEST(CaptionFont, DescriptionsNameFamilyAndStyle) {
    using ImageTools::FontForDescription;
    const auto bold = FontForDescription(
        ImageTools::FontDescription(QStringLiteral("DejaVu Sans"), QStringLiteral("Bold")));
    EXPECT_EQ(bold.family, QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(bold.style, QStringLiteral("Bold"));
    EXPECT_EQ(FontForDescription(QStringLiteral("DejaVu Sans")).style, QString());
    EXPECT_EQ(FontForDescription(QStringLiteral("Nobody:Bold")).style, QString());
}

TEST(CaptionFont, EachOfTheTwentyHasFamiliesLikeIt) {
    ASSERT_EQ(ImageTools::CaptionFontNames().size(), 20);
    for (const QString& name : ImageTools::CaptionFontNames()) {
        EXPECT_FALSE(FamiliesLike(name).isEmpty()) << qPrintable(name);
    }
    EXPECT_FALSE(ImageTools::FontNameForIndex(19).isEmpty());
    EXPECT_TRUE(ImageTools::FontNameForIndex(-1).isEmpty());
    EXPECT_TRUE(ImageTools::FontNameForIndex(20).isEmpty());
}

}  // namespace
}  // namespace lumirra
