#include "views/style/Colors.h"

namespace lumirra {
namespace {

QColor Rgb(QRgb value) {
    return QColor::fromRgb(value);
}

ThemeColors Shared() {
    ThemeColors colors;
    colors.trackFilled = QColor::fromRgbF(0.6F, 0.8F, 1.0F);
    colors.startTick = QColor(0, 194, 21);
    colors.endTick = QColor(245, 28, 1);
    colors.accentText = Qt::white;
    return colors;
}

ThemeColors MakeLight() {
    ThemeColors colors = Shared();
    colors.window = Rgb(0xf3f3f5);
    colors.surface = Rgb(0xffffff);
    colors.field = Rgb(0xffffff);
    colors.canvas = Rgb(0xe3e3e8);
    colors.cell = Rgb(0xc4c4c9);
    colors.border = Rgb(0xcfcfd6);
    colors.outline = Rgb(0x8a8a94);
    colors.button = Rgb(0xffffff);
    colors.buttonHover = Rgb(0xf0f4fd);
    colors.buttonPressed = Rgb(0xdfe8fb);
    colors.text = Rgb(0x1c1c20);
    colors.textDim = Rgb(0x5f5f69);
    colors.textDisabled = Rgb(0x9a9aa4);
    colors.accent = Rgb(0x2c6bed);
    colors.accentHover = Rgb(0x3f7bf5);
    colors.accentPressed = Rgb(0x1f57cc);
    colors.accentSoft = Rgb(0xdde8fd);
    colors.track = Rgb(0xaaaaaa);
    colors.trackDisabled = Rgb(0xdadae0);
    colors.knob = Rgb(0xffffff);
    colors.knobBorder = Rgb(0x8a8a94);
    colors.scrollHandle = Rgb(0xb9b9c2);
    colors.checkerLight = Rgb(0xffffff);
    colors.checkerDark = Rgb(0xdcdce2);
    colors.warning = Rgb(0xb3261e);
    return colors;
}

ThemeColors MakeDark() {
    ThemeColors colors = Shared();
    colors.window = Rgb(0x252529);
    colors.surface = Rgb(0x2e2e33);
    colors.field = Rgb(0x1d1d21);
    colors.canvas = Rgb(0x1a1a1d);
    colors.cell = Rgb(0x151518);
    colors.border = Rgb(0x4a4a53);
    colors.outline = Rgb(0x83838f);
    colors.button = Rgb(0x3b3b43);
    colors.buttonHover = Rgb(0x474751);
    colors.buttonPressed = Rgb(0x2f3a52);
    colors.text = Rgb(0xf0f0f3);
    colors.textDim = Rgb(0xacacb6);
    colors.textDisabled = Rgb(0x7b7b86);
    colors.accent = Rgb(0x3b7cf6);
    colors.accentHover = Rgb(0x5590ff);
    colors.accentPressed = Rgb(0x2b63cf);
    colors.accentSoft = Rgb(0x33415f);
    colors.track = Rgb(0x5d5d67);
    colors.trackDisabled = Rgb(0x424249);
    colors.knob = Rgb(0xffffff);
    colors.knobBorder = Rgb(0x141416);
    colors.scrollHandle = Rgb(0x5f5f6a);
    colors.checkerLight = Rgb(0x3a3a40);
    colors.checkerDark = Rgb(0x2c2c31);
    colors.warning = Rgb(0xff8a80);
    return colors;
}

}  // namespace

const ThemeColors& LightColors() {
    static const ThemeColors kColors = MakeLight();
    return kColors;
}

const ThemeColors& DarkColors() {
    static const ThemeColors kColors = MakeDark();
    return kColors;
}

const ThemeColors& ColorsOf(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128 ? DarkColors() : LightColors();
}

QPalette PaletteFor(const ThemeColors& colors) {
    QPalette palette;
    palette.setColor(QPalette::Window, colors.window);
    palette.setColor(QPalette::WindowText, colors.text);
    palette.setColor(QPalette::Base, colors.field);
    palette.setColor(QPalette::AlternateBase, colors.surface);
    palette.setColor(QPalette::Text, colors.text);
    palette.setColor(QPalette::Button, colors.button);
    palette.setColor(QPalette::ButtonText, colors.text);
    palette.setColor(QPalette::BrightText, colors.warning);
    palette.setColor(QPalette::PlaceholderText, colors.textDim);
    palette.setColor(QPalette::ToolTipBase, colors.surface);
    palette.setColor(QPalette::ToolTipText, colors.text);
    palette.setColor(QPalette::Highlight, colors.accent);
    palette.setColor(QPalette::HighlightedText, colors.accentText);
    palette.setColor(QPalette::Link, colors.accent);
    palette.setColor(QPalette::LinkVisited, colors.accent);
    palette.setColor(QPalette::Light, colors.surface);
    palette.setColor(QPalette::Midlight, colors.border);
    palette.setColor(QPalette::Mid, colors.border);
    palette.setColor(QPalette::Dark, colors.knobBorder);
    palette.setColor(QPalette::Shadow, Qt::black);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, colors.textDisabled);
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, colors.window);
    palette.setColor(QPalette::Disabled, QPalette::Button, colors.window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colors.border);
    return palette;
}

}  // namespace lumirra
