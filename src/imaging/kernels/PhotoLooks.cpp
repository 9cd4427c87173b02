#include "imaging/kernels/PhotoLooks.h"

#include <algorithm>

#include "imaging/Effects.h"

namespace lumirra {

namespace {

/// black + (white - black) * (c + c (1 - c) (bend + contrast (2c - 1))): `bend` lifts (or,
/// negative, lowers) the middle by a quarter of it; `contrast` steepens the middle and eases both
/// ends. It rises everywhere while |bend| + |contrast| <= 1, so it neither clips nor makes steps.
struct ToneCurve {
    float black;
    float white;
    float bend;
    float contrast;
};

/// A look as it is tuned.
struct LookRecipe {
    const char* name;
    std::array<float, 3> grey;  ///< weights of the grey that colours are mixed with
    float color;                ///< 1 the colours as they are, 0 that grey
    float vividness;
    std::array<ToneCurve, 3> curves;  ///< red, green, blue
};

constexpr std::array<float, 3> kLuminance = {0.2125F, 0.7154F, 0.0721F};

constexpr std::array<ToneCurve, 3> Same(ToneCurve curve) {
    return {curve, curve, curve};
}

constexpr std::array<LookRecipe, 8> kRecipes = {{
    {"Chrome", kLuminance, 1, 0.36F, Same({0, 1, 0.05F, 0.24F})},
    {"Fade",
     kLuminance,
     0.62F,
     0,
     {{{0.15F, 0.93F, 0.05F, -0.1F}, {0.14F, 0.92F, 0.05F, -0.1F}, {0.15F, 0.89F, 0.05F, -0.1F}}}},
    {"Instant",
     kLuminance,
     0.78F,
     0.1F,
     {{{0.14F, 0.99F, 0.26F, 0.2F}, {0.12F, 0.95F, 0.14F, 0.2F}, {0.17F, 0.84F, 0, 0.1F}}}},
    {"Mono", kLuminance, 0, 0, Same({0.08F, 0.92F, 0.08F, -0.05F})},
    {"Noir", {0.3F, 0.6F, 0.1F}, 0, 0, Same({0, 1, -0.05F, 0.8F})},
    {"Process",
     kLuminance,
     0.94F,
     0.12F,
     {{{0, 0.95F, -0.13F, 0.35F}, {0.01F, 0.98F, 0, 0.22F}, {0.06F, 0.98F, 0.22F, 0.05F}}}},
    {"Tonal", kLuminance, 0, 0, Same({0, 1, 0, 0})},
    {"Transfer",
     kLuminance,
     0.9F,
     0.1F,
     {{{0.03F, 1, 0.24F, 0.3F}, {0.02F, 0.96F, -0.06F, 0.25F}, {0.04F, 0.86F, -0.18F, 0.1F}}}},
}};

std::array<float, 4> Polynomial(const ToneCurve& curve) {
    const float span = curve.white - curve.black;
    return {curve.black, span * (1 + curve.bend - curve.contrast),
            span * (3 * curve.contrast - curve.bend), span * -2 * curve.contrast};
}

PhotoLook Make(const LookRecipe& recipe) {
    PhotoLook look{};
    look.vividness = recipe.vividness;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            look.matrix[3 * row + column] =
                (1 - recipe.color) * recipe.grey[column] + (row == column ? recipe.color : 0);
        }
        look.curve[row] = Polynomial(recipe.curves[row]);
    }
    return look;
}

}  // namespace

std::optional<PhotoLook> FindPhotoLook(const QString& name) {
    const auto found =
        std::find_if(kRecipes.begin(), kRecipes.end(),
                     [&](const LookRecipe& recipe) { return name == QLatin1String(recipe.name); });
    if (found == kRecipes.end()) {
        return std::nullopt;
    }
    return Make(*found);
}

const QStringList& ImageTools::PhotoEffectNames() {
    static const QStringList names = [] {
        QStringList list;
        for (const LookRecipe& recipe : kRecipes) {
            list << QLatin1String(recipe.name);
        }
        return list;
    }();
    return names;
}

}  // namespace lumirra
